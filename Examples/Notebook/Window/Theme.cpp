#include "Window/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace notebook {
namespace {

struct Colors {
  QColor window, text, base, alternate, button, faint, accent, onAccent, link;
};

QPalette paletteOf(const Colors& colors) {
  QPalette palette;
  palette.setColor(QPalette::Window, colors.window);
  palette.setColor(QPalette::WindowText, colors.text);
  palette.setColor(QPalette::Base, colors.base);
  palette.setColor(QPalette::AlternateBase, colors.alternate);
  palette.setColor(QPalette::Text, colors.text);
  palette.setColor(QPalette::Button, colors.button);
  palette.setColor(QPalette::ButtonText, colors.text);
  palette.setColor(QPalette::ToolTipBase, colors.base);
  palette.setColor(QPalette::ToolTipText, colors.text);
  palette.setColor(QPalette::PlaceholderText, colors.faint);
  palette.setColor(QPalette::Highlight, colors.accent);
  palette.setColor(QPalette::HighlightedText, colors.onAccent);
  palette.setColor(QPalette::Link, colors.link);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, colors.faint);
  return palette;
}

const Colors& lightColors() {
  static const Colors colors{"#f4f2ee", "#22252a", "#ffffff", "#f7f6f3", "#eceae5",
                             "#75787d", "#2f6f5e", "#ffffff", "#1f5fa8"};
  return colors;
}

const Colors& darkColors() {
  static const Colors colors{"#26282c", "#e6e4df", "#1d1f22", "#24272b", "#33363b",
                             "#9a9da3", "#3f8f79", "#ffffff", "#8ab8f0"};
  return colors;
}

}  // namespace

void setTheme(QApplication& application, bool isDark) {
  const QPalette palette = paletteOf(isDark ? darkColors() : lightColors());
  if (application.palette() == palette) return;
  // The one style that keeps to a palette in all of its parts.
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  application.setPalette(palette);
}

}  // namespace notebook
