#pragma once

class QApplication;

namespace notebook {

// Gives the whole application light or dark colours, at once; both with enough contrast to be read for long.
void setTheme(QApplication& application, bool isDark);

}  // namespace notebook
