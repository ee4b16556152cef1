#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace notebook {

// The preferences, to be changed; each change counts at once. Main thread only.
class PreferencesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PreferencesDialog(QWidget* parent = nullptr);

 private:
  QSpinBox* myZoom;
  QCheckBox* myDarkTheme;
  QComboBox* myLogLevel;
  QLineEdit* mySite;
};

}  // namespace notebook
