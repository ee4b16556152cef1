#pragma once

// Marks what a host may link to; everything else stays inside the shared object.
#define KELVANE_EXPORT __attribute__((visibility("default")))
