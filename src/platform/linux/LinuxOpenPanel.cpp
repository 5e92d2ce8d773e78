#include "platform/linux/LinuxOpenPanel.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTreeView>
#include <memory>
#include <vector>

#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

constexpr int kSpaceBelowMessage = 6;  // pixels
constexpr double kPartOfScreen = 0.8;  // at the most
// Of the toolkit's model of files.
enum Column { kNameColumn, kSizeColumn, kTypeColumn, kDateColumn };

FileUrl urlOf(const QString& path) {
  FileUrl url = FileUrl::fromPath(QFile::encodeName(path).toStdString());
  url.isDirectory = true;
  return url;
}

// While it lives, the toolkit finds and leaves nothing in its own settings: its dialogs would write down
// there which folders were visited.
class WithoutToolkitSettings {
 public:
  WithoutToolkitSettings() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null"); }
  ~WithoutToolkitSettings() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
  }
  WithoutToolkitSettings(const WithoutToolkitSettings&) = delete;
  WithoutToolkitSettings& operator=(const WithoutToolkitSettings&) = delete;
};

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
    hideTypes();
    showDates();
    showNamesFromTheLeft();
    connect(this, &QFileDialog::currentChanged, this, [this] { updateButton(); });
    connect(this, &QFileDialog::directoryEntered, this, [this] { updateButton(); });
    if (auto* const name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
      connect(name, &QLineEdit::textChanged, this, [this] { updateButton(); });
    updateButton();
    resize(sizeHint().boundedTo(screen()->availableSize() * kPartOfScreen));
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
  // What the user is asked for stands above everything else.
  void addMessage() {
    auto* const grid = qobject_cast<QGridLayout*>(layout());
    if (!grid) return;
    struct Cell {
      std::unique_ptr<QLayoutItem> item;
      int row, column, rows, columns;
    };
    std::vector<Cell> cells;
    while (grid->count() > 0) {
      int row = 0, column = 0, rows = 0, columns = 0;
      grid->getItemPosition(0, &row, &column, &rows, &columns);
      cells.push_back({std::unique_ptr<QLayoutItem>(grid->takeAt(0)), row, column, rows, columns});
    }
    for (Cell& cell : cells)
      grid->addItem(cell.item.release(), cell.row + 1, cell.column, cell.rows, cell.columns);

    auto* const message = new QLabel(QString::fromStdString(request_.message), this);
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    alignWithLayout(*message);
    message->setContentsMargins(0, 0, 0, kSpaceBelowMessage);
    grid->addWidget(message, 0, 0, 1, grid->columnCount());
  }

  // Only folders are shown, so there are no types to choose from.
  void hideTypes() {
    for (const char* const name : {"fileTypeLabel", "fileTypeCombo"}) {
      if (auto* const widget = findChild<QWidget*>(QLatin1String(name))) widget->hide();
    }
  }

  // A mirrored name would end with the full stop with which a hidden folder's begins, and a path with its
  // root.
  void showNamesFromTheLeft() {
    for (auto* const view : findChildren<QAbstractItemView*>())
      view->setLayoutDirection(Qt::LeftToRight);
    for (auto* const path : findChildren<QComboBox*>())
      path->setLayoutDirection(Qt::LeftToRight);
  }

  // Folders have neither sizes nor types, and a date is shown whole.
  void showDates() {
    auto* const tree = findChild<QTreeView*>(QStringLiteral("treeView"));
    if (!tree || !tree->model()) return;
    for (const int column : {kSizeColumn, kTypeColumn})
      tree->setColumnHidden(column, true);
    tree->header()->setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(kDateColumn, QHeaderView::ResizeToContents);
    tree->header()->setStretchLastSection(false);
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
  const WithoutToolkitSettings traceless;
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
