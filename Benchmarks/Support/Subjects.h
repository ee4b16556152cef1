#pragma once

#include <vector>

namespace kelvane::bench {

// What makes the rows of each source file; see Subject.
std::vector<void (*)()>& subjects();

}  // namespace kelvane::bench
