#include "platform/linux/LinuxOpenPanel.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace harbor {
namespace {

FileUrl urlOf(const QString& path) {
  FileUrl url = FileUrl::fromPath(QFile::encodeName(path).toStdString());
  url.isDirectory = true;
  return url;
}

// A directory panel in which only the folder that the request enables can be opened.
class FolderDialog : public QFileDialog {
 public:
  explicit FolderDialog(const OpenPanelRequest& request) : request_(request) {
    setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
    setFileMode(QFileDialog::Directory);
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QString::fromStdString(request.title));
    setFilter(filter() | QDir::Hidden);
    setLabelText(QFileDialog::Accept, QStringLiteral("Open"));
    setDirectory(QFile::decodeName(request.directory.path.c_str()));
    addMessage();
    connect(this, &QFileDialog::currentChanged, this, [this] { updateButton(); });
    connect(this, &QFileDialog::directoryEntered, this, [this] { updateButton(); });
    if (auto* const name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
      connect(name, &QLineEdit::textChanged, this, [this] { updateButton(); });
    updateButton();
  }

  // What the Open button would open: the selected folder, or the shown one while none is selected.
  FileUrl candidate() const {
    const QStringList selected = selectedFiles();
    return urlOf(selected.isEmpty() ? directory().absolutePath() : selected.first());
  }

 protected:
  // Enter and a double click come here as well as the button.
  void accept() override {
    if (!request_.shouldEnable || request_.shouldEnable(candidate())) {
      QDialog::accept();
    } else {
      setDirectory(QFile::decodeName(candidate().path.c_str()));
      updateButton();
    }
  }

 private:
  void addMessage() {
    auto* const grid = qobject_cast<QGridLayout*>(layout());
    if (!grid) return;
    auto* const message = new QLabel(QString::fromStdString(request_.message), this);
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    grid->addWidget(message, grid->rowCount(), 0, 1, grid->columnCount());
  }

  void updateButton() {
    // The dialog sets the button's state itself after each of these signals.
    QMetaObject::invokeMethod(
        this,
        [this] {
          if (auto* const box = findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))) {
            if (auto* const button = box->button(QDialogButtonBox::Open))
              button->setEnabled(!request_.shouldEnable || request_.shouldEnable(candidate()));
          }
        },
        Qt::QueuedConnection);
  }

  const OpenPanelRequest& request_;
};

}  // namespace

std::optional<FileUrl> LinuxOpenPanel::run(const OpenPanelRequest& request) {
  FolderDialog dialog(request);
  const Subscription modal = modalWindows_.enter(dialog);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  userTime_.bringToFront(dialog);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const FileUrl picked = dialog.candidate();
  if (request.shouldEnable && !request.shouldEnable(picked)) return std::nullopt;
  return picked;
}

}  // namespace harbor
