#pragma once

#include <QDialog>

#include "Network/QNHTTPPost.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace notebook {

// A form that sends what the user has to say, and the application's log if wanted, to the maker's web site. It shows
// how far that has come, and can be told to stop. Main thread only.
class FeedbackDialog : public QDialog, private kelvane::QNHTTPPostDelegate {
  Q_OBJECT

 public:
  // The address that the form goes to.
  FeedbackDialog(kelvane::Text address, QWidget* parent = nullptr);
  ~FeedbackDialog() override;

  bool isSending() const { return myIsSending; }
  // What became of the last attempt, in one sentence; empty before.
  QString outcome() const;

 public Q_SLOTS:
  void send();
  // While something is being sent, ends that; otherwise closes the form.
  void reject() override;

 Q_SIGNALS:
  // The answer has come, or the attempt has failed.
  void ended();

 private:
  void postProgressed(kelvane::QNHTTPPost& post, std::uint64_t sentBytes, std::uint64_t bytesToSend) override;
  void postFinished(kelvane::QNHTTPPost& post) override;
  void postFailed(kelvane::QNHTTPPost& post, const kelvane::Ref<kelvane::NSError>& withError) override;

  QString objection() const;
  kelvane::Ref<kelvane::NSDictionary> form() const;
  void setSending(bool isSending, const QString& sentence);

  QLineEdit* myEmail;
  QPlainTextEdit* myMessage;
  QCheckBox* myWithLog;
  QProgressBar* myProgress;
  QLabel* myOutcome;
  QPushButton* mySend;
  kelvane::QNHTTPPost myPost;
  bool myIsSending = false;
};

}  // namespace notebook
