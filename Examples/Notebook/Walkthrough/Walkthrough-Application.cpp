#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTimer>

#include "Platform/Foundation/NSDictionary.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNLogger.h"
#include "Walkthrough/Walkthrough.h"
#include "Window/FeedbackDialog.h"
#include "Window/MainWindow.h"
#include "Window/NotePane.h"
#include "Window/Preferences.h"
#include "Window/PreferencesDialog.h"
#include "Window/QtText.h"

namespace notebook {

void Walkthrough::followLinks() {
  step("has the pages of the web site in its Help menu", [this]() -> Outcome {
    // Pages are not to be opened in a browser here.
    QDesktopServices::setUrlHandler(QStringLiteral("http"), qApp, "");
    choose(*myWindow, u"openPage:");
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    return myWindow->told().startsWith(QStringLiteral("http://127.0.0.1")) ? QString() : myWindow->told();
  });
}

void Walkthrough::sendFeedback() {
  const auto address = kelvane::QNEnvironment::sharedEnvironment().linkFromSitemapForKey(u"feedback");
  step("sends feedback, and shows how far that has come", [&]() -> Outcome {
    FeedbackDialog dialog(address.value_or(u""), myWindow.get());
    dialog.show();
    dialog.send();
    if (dialog.isSending()) return QStringLiteral("it sends an empty message");
    type(*dialog.findChild<QPlainTextEdit*>(), QStringLiteral("All is well."));
    type(*dialog.findChild<QLineEdit*>(), QStringLiteral("ann"));
    dialog.send();
    if (dialog.isSending()) return QStringLiteral("it takes any e-mail address");
    type(*dialog.findChild<QLineEdit*>(), QStringLiteral("@example.org"));
    dialog.send();
    if (!waitUntil([&] { return !dialog.isSending(); })) return QStringLiteral("no answer comes");
    takePicture(dialog, QStringLiteral("9-feedback"));
    return dialog.outcome().startsWith(QStringLiteral("Thank you")) ? QString() : dialog.outcome();
  });
  step("stops sending when told to", [&]() -> Outcome {
    FeedbackDialog dialog(address.value_or(u""), myWindow.get());
    dialog.show();
    type(*dialog.findChild<QPlainTextEdit*>(), QStringLiteral("Never mind."));
    bool hasEnded = false;
    QObject::connect(&dialog, &FeedbackDialog::ended, [&] { hasEnded = true; });
    dialog.send();
    dialog.reject();
    waitUntil([] { return false; }, 100);
    return hasEnded || dialog.isSending() || !dialog.isVisible() ? QStringLiteral("it goes on") : QString();
  });
}

void Walkthrough::changePreferences() {
  step("takes up preferences at once, dark colours among them", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("allotment-meeting.txt"));
    PreferencesDialog dialog(myWindow.get());
    dialog.show();
    const double before = myWindow->pane().zoom();
    dialog.findChild<QCheckBox*>()->setChecked(true);
    dialog.findChild<QSpinBox*>()->setValue(150);
    takePicture(*myWindow, QStringLiteral("10-dark"));
    takePicture(dialog, QStringLiteral("11-preferences"));
    const bool isDark = QApplication::palette().color(QPalette::Base).lightness() < 100;
    const bool isZoomed = myWindow->pane().zoom() == 1.5 && before != 1.5;
    setPrefersDarkTheme(false);
    return isDark && isZoomed ? QString() : QStringLiteral("the window is as it was");
  });
}

void Walkthrough::keepPlaces() {
  step("comes back where it was", [this]() -> Outcome {
    myWindow->setGeometry(140, 110, 860, 600);
    waitUntil([] { return false; }, 50);
    const QRect before = myWindow->geometry();
    myWindow->close();
    openWindow(myFolder);
    waitUntil([&] { return myWindow->geometry() == before; }, 1000);
    const QRect after = myWindow->geometry();
    return after == before
               ? QString()
               : QStringLiteral("%1, %2 became %3, %4").arg(before.x()).arg(before.y()).arg(after.x()).arg(after.y());
  });
}

void Walkthrough::showFatalAlert() {
  step("shows a fatal message until a key is pressed", [this]() -> Outcome {
    bool wasShown = false;
    QTimer pressing;
    QObject::connect(&pressing, &QTimer::timeout, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!box) return;
      if (!wasShown) takePicture(*box, QStringLiteral("12-fatal"));
      wasShown = true;
      type(*box, QStringLiteral("\n"));
    });
    pressing.start(50);
    kelvane::QNLogger::sharedLogger().fatal(__LINE__, __FILE__, __func__, u"The notebook is only being tried out.",
                                            true);
    return wasShown ? QString() : QStringLiteral("nothing was shown");
  });
}

}  // namespace notebook
