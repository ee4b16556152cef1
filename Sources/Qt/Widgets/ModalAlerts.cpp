#include "Qt/Widgets/ModalAlerts.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <future>
#include <memory>
#include <utility>

#include "Platform/Foundation/NSRunLoop.h"
#include "Qt/Widgets/NestedLoop.h"
#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

QString beginning(const QString& text) {
  constexpr int mostLines = 30;
  constexpr qsizetype mostUnits = 3000;
  const QString lines = text.section(u'\n', 0, mostLines - 1).left(mostUnits);
  return lines.size() == text.size() ? text : lines + u'\u2026';
}

// A button would take an ampersand for the mark of its key.
QString label(TextView title) { return title.empty() ? u"OK"_qs : qString(title).replace(u'&', u"&&"_qs); }

// Whoever waits for what is promised goes on too when this goes before it was kept.
struct AskedAlert {
  ModalAlert alert;
  std::promise<void> isShown;
  std::promise<void> isClosed;
};

}  // namespace

void showAlert(const ModalAlert& alert) {
  // It may go with its parent, or with all windows.
  const QPointer<QMessageBox> box = new QMessageBox(QApplication::activeWindow());
  box->setWindowTitle(QGuiApplication::applicationDisplayName());
  box->setIcon(QMessageBox::Critical);
  box->setText(beginning(qString(alert.title)));
  box->setInformativeText(beginning(qString(alert.informativeText)));
  for (QLabel* const each : box->findChildren<QLabel*>()) each->setTextFormat(Qt::PlainText);
  QPushButton* const button = box->addButton(label(alert.defaultButton), QMessageBox::AcceptRole);
  box->setDefaultButton(button);
  box->setEscapeButton(button);
  box->setWindowModality(Qt::ApplicationModal);
  NestedLoop loop;
  QObject::connect(box, &QDialog::finished, [&loop] { loop.leave(); });
  QObject::connect(box, &QObject::destroyed, [&loop] { loop.leave(); });
  box->show();
  box->raise();
  box->activateWindow();
  loop.run();
  if (!box) return;
  box->disconnect();
  delete box;
}

void runAlertOnMainThread(NSRunLoop& mainLoop, const ModalAlert& alert, std::chrono::milliseconds patience) {
  auto asked = std::make_shared<AskedAlert>(alert);
  const std::future<void> isShown = asked->isShown.get_future();
  const std::future<void> isClosed = asked->isClosed.get_future();
  mainLoop.performBlock([asked = std::move(asked)] {
    asked->isShown.set_value();
    Desktop::current().runModalAlert(asked->alert);
    asked->isClosed.set_value();
  });
  if (isShown.wait_for(patience) == std::future_status::ready) isClosed.wait();
}

}  // namespace kelvane
