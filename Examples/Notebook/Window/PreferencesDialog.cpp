#include "Window/PreferencesDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>
#include <cmath>

#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Utilities/QNLogger.h"
#include "Window/Preferences.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

using kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults;

}  // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent)
    : QDialog(parent),
      myZoom(new QSpinBox(this)),
      myDarkTheme(new QCheckBox(tr("&Dark theme"), this)),
      myLogLevel(new QComboBox(this)),
      mySite(new QLineEdit(this)) {
  setWindowTitle(tr("Preferences"));
  setObjectName(QStringLiteral("preferences"));
  myZoom->setRange(50, 400);
  myZoom->setSingleStep(25);
  myZoom->setSuffix(tr(" %"));
  myZoom->setValue(static_cast<int>(std::lround(preferredZoom() * 100)));
  myDarkTheme->setChecked(prefersDarkTheme());
  myLogLevel->addItems(
      {tr("Everything"), tr("Information"), tr("Warnings"), tr("Errors"), tr("What ends the program")});
  myLogLevel->setCurrentIndex(static_cast<int>(kelvane::QNLogger::sharedLogger().logLevel()));
  mySite->setText(toQt(preferredSite().value_or(u"")));
  mySite->setPlaceholderText(tr("host or host:port"));
  auto* layout = new QFormLayout(this);
  layout->addRow(tr("&Size of text:"), myZoom);
  layout->addRow(QString(), myDarkTheme);
  layout->addRow(tr("&Log:"), myLogLevel);
  layout->addRow(tr("&Web site:"), mySite);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(myZoom, &QSpinBox::valueChanged, this, [](int percent) { setPreferredZoom(percent / 100.0); });
  connect(myDarkTheme, &QCheckBox::toggled, this, [](bool isDark) { setPrefersDarkTheme(isDark); });
  connect(myLogLevel, &QComboBox::currentIndexChanged, this,
          [](int level) { setInteger(standardUserDefaults(), level, logLevelKey); });
  connect(mySite, &QLineEdit::editingFinished, this,
          [this] { setString(standardUserDefaults(), viewOf(mySite->text().trimmed()), siteKey); });
}

}  // namespace notebook
