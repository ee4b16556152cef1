#pragma once

#include <string>

#include "Platform/Foundation/Text.h"

namespace notebook {

// Standard output, in UTF-8 and in large pieces. The first failure is kept, and what is written after it is dropped.
class Output {
 public:
  // Appends a line, and says whether there is enough for `flush`.
  bool writeLine(kelvane::TextView line);
  void flush();
  // Writes the rest and gives the file back, which is when some file systems tell that they are full. Nothing can be
  // written afterwards. The answer tells whether all has arrived; if not, standard error tells why.
  bool finish();

  bool hasFailed() const { return myError != 0; }

 private:
  std::string myBuffer;
  // 0, or the error number of the first failure.
  int myError = 0;
};

// Writes at once. Nobody could be told if it failed.
void writeToStandardError(kelvane::TextView text);

// Writes a line of its own to standard error: "Notebook: message".
void complain(kelvane::TextView message);

}  // namespace notebook
