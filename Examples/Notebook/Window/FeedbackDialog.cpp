#include "Window/FeedbackDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSURL.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNValidationHelper.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

using kelvane::NSDictionary;
using kelvane::QNHTTPPost;
using kelvane::Ref;

constexpr int wholeProgress = 1000;

}  // namespace

FeedbackDialog::FeedbackDialog(kelvane::Text address, QWidget* parent)
    : QDialog(parent),
      myEmail(new QLineEdit(this)),
      myMessage(new QPlainTextEdit(this)),
      myWithLog(new QCheckBox(tr("Send the application's &log along"), this)),
      myProgress(new QProgressBar(this)),
      myOutcome(new QLabel(this)),
      mySend(new QPushButton(tr("&Send"), this)),
      myPost(address, this) {
  setWindowTitle(tr("Feedback"));
  setObjectName(QStringLiteral("feedback"));
  myEmail->setPlaceholderText(tr("Only if you want an answer"));
  myMessage->setTabChangesFocus(true);
  myWithLog->setChecked(true);
  myProgress->setRange(0, wholeProgress);
  myProgress->setAccessibleName(tr("How much has been sent"));
  myOutcome->setWordWrap(true);
  myOutcome->setTextFormat(Qt::PlainText);
  auto* form = new QFormLayout;
  form->addRow(tr("&E-mail:"), myEmail);
  form->addRow(tr("&Message:"), myMessage);
  form->addRow(QString(), myWithLog);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
  buttons->addButton(mySend, QDialogButtonBox::AcceptRole);
  mySend->setDefault(true);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(myProgress);
  layout->addWidget(myOutcome);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::rejected, this, &FeedbackDialog::reject);
  connect(mySend, &QPushButton::clicked, this, &FeedbackDialog::send);
  resize(460, 360);
}

FeedbackDialog::~FeedbackDialog() = default;

QString FeedbackDialog::outcome() const { return myOutcome->text(); }

// Why the form cannot go out as it is; empty when it can.
QString FeedbackDialog::objection() const {
  if (myMessage->toPlainText().trimmed().isEmpty()) return tr("Please write what you have to say.");
  const QString address = myEmail->text().trimmed();
  if (!address.isEmpty() && !kelvane::QNValidationHelper::validateEmail(viewOf(address)))
    return tr("This is no e-mail address.");
  return {};
}

Ref<NSDictionary> FeedbackDialog::form() const {
  const kelvane::QNEnvironment& environment = kelvane::QNEnvironment::sharedEnvironment();
  NSDictionary::Entries fields{{u"email", kelvane::box(fromQt(myEmail->text().trimmed()))},
                               {u"message", kelvane::box(fromQt(myMessage->toPlainText()))}};
  if (myWithLog->isChecked()) fields.emplace(u"log", kelvane::NSURL::fileURLWithPath(environment.logFilePath()));
  return std::make_shared<NSDictionary>(std::move(fields));
}

void FeedbackDialog::send() {
  if (myIsSending) return;
  if (const QString reason = objection(); !reason.isEmpty()) return myOutcome->setText(reason);
  myProgress->setValue(0);
  setSending(true, tr("Sending…"));
  myPost.postAndNotify(form());
}

void FeedbackDialog::reject() {
  if (!myIsSending) return QDialog::reject();
  myPost.cancel();
  myProgress->setValue(0);
  setSending(false, tr("Nothing more is sent."));
}

void FeedbackDialog::setSending(bool isSending, const QString& sentence) {
  myIsSending = isSending;
  mySend->setEnabled(!isSending);
  myOutcome->setText(sentence);
}

void FeedbackDialog::postProgressed(QNHTTPPost&, std::uint64_t sentBytes, std::uint64_t bytesToSend) {
  if (bytesToSend > 0)
    myProgress->setValue(
        static_cast<int>(static_cast<double>(sentBytes) / static_cast<double>(bytesToSend) * wholeProgress));
}

void FeedbackDialog::postFinished(QNHTTPPost& post) {
  myProgress->setValue(wholeProgress);
  setSending(false, toQt(post.response()));
  Q_EMIT ended();
}

void FeedbackDialog::postFailed(QNHTTPPost&, const Ref<kelvane::NSError>& withError) {
  setSending(false, tr("It could not be sent: %1").arg(toQt(withError->localizedDescription())));
  Q_EMIT ended();
}

}  // namespace notebook
