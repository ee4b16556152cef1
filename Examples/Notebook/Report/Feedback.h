#pragma once

namespace notebook {

// Asks the sitemap of a web site for links, and sends it feedback with a file, first waiting for the answer, then in
// the background; prints what came of each. The answer tells whether all of it went well.
bool sendFeedback();

}  // namespace notebook
