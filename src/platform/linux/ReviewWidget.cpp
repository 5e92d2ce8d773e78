#include "platform/linux/ReviewWidget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/linux/ReviewTableModel.h"

namespace harbor {
namespace {

constexpr QSize kDefaultSize{920, 560};
constexpr QSize kSmallestSize{560, 320};
constexpr int kMargin = 12;

bool isButtonColumn(int column) {
  return column == ReviewTableModel::revealColumn || column == ReviewTableModel::quickLookColumn;
}

// Draws a cell as a push button.
class ButtonDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = std::exchange(cell.text, QString());
    QStyle* const style = cell.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    QStyleOptionButton button;
    button.rect = option.rect.adjusted(3, 2, -3, -2);
    button.text = text;
    button.palette = option.palette;
    button.direction = option.direction;
    button.fontMetrics = option.fontMetrics;
    button.state = (option.state & (QStyle::State_Enabled | QStyle::State_MouseOver)) | QStyle::State_Raised;
    if (option.state & QStyle::State_HasFocus) button.state |= QStyle::State_HasFocus;
    style->drawControl(QStyle::CE_PushButton, &button, painter, cell.widget);
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize text = option.fontMetrics.size(Qt::TextSingleLine, index.data().toString());
    return {text.width() + 28, text.height() + 10};
  }
};

QLabel* plainLabel(QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ReviewWidget::ReviewWidget(ReviewWindowEvents events)
    : events_(std::move(events)),
      model_(new ReviewTableModel(this)),
      sorted_(new QSortFilterProxyModel(this)),
      table_(new QTableView(this)),
      spinner_(new QWidget(table_)),
      spinnerMessage_(plainLabel(spinner_)),
      summary_(plainLabel(this)),
      status_(plainLabel(this)),
      deleteButton_(new QPushButton(tr("Delete"), this)) {
  makeTable();
  makeSpinner();
  deleteButton_->setAccessibleDescription(tr("Moves the selected files to the Trash"));
  summary_->setMinimumWidth(160);

  auto* const texts = new QVBoxLayout;
  texts->addWidget(summary_);
  texts->addWidget(status_);
  auto* const bottom = new QHBoxLayout;
  bottom->addLayout(texts, 1);
  bottom->addWidget(deleteButton_, 0, Qt::AlignVCenter);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(table_, 1);
  layout->addLayout(bottom);

  setMinimumSize(kSmallestSize);
  resize(kDefaultSize.boundedTo(screen()->availableSize()));
  connect(deleteButton_, &QPushButton::clicked, this, [this] {
    QTimer::singleShot(0, this, [this] {
      if (const auto clicked = events_.deleteButtonClicked) clicked();
    });
  });
  connect(model_, &ReviewTableModel::selectionChanged, this, [this](int row, bool isSelected) {
    if (events_.selectionChanged) events_.selectionChanged(static_cast<std::size_t>(row), isSelected);
  });
}

void ReviewWidget::makeTable() {
  sorted_->setSourceModel(model_);
  sorted_->setSortRole(ReviewTableModel::sortRole);
  table_->setModel(sorted_);
  table_->setAccessibleName(tr("Related files"));
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setAlternatingRowColors(true);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setTextElideMode(Qt::ElideMiddle);
  table_->setTabKeyNavigation(false);
  table_->setMouseTracking(true);
  table_->installEventFilter(this);
  table_->setItemDelegateForColumn(ReviewTableModel::revealColumn, new ButtonDelegate(table_));
  table_->setItemDelegateForColumn(ReviewTableModel::quickLookColumn, new ButtonDelegate(table_));
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 14);

  // Search order until the user asks for another.
  table_->setSortingEnabled(true);
  QHeaderView* const header = table_->horizontalHeader();
  header->setSortIndicatorClearable(true);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  sorted_->sort(-1);
  header->setHighlightSections(false);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setSectionResizeMode(ReviewTableModel::folderColumn, QHeaderView::Stretch);
  const int unit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  header->resizeSection(ReviewTableModel::checkColumn, unit * 9);
  header->resizeSection(ReviewTableModel::nameColumn, unit * 36);
  header->resizeSection(ReviewTableModel::sizeColumn, unit * 12);
  header->resizeSection(ReviewTableModel::revealColumn, unit * 11);
  header->resizeSection(ReviewTableModel::quickLookColumn, unit * 11);

  connect(table_, &QTableView::clicked, this, [this](const QModelIndex& index) {
    // A click on a box alone would leave the keyboard on another row, which Space would then tick.
    if (index.column() == ReviewTableModel::checkColumn) table_->setCurrentIndex(index);
    if (isButtonColumn(index.column())) pressed(index);
  });
}

void ReviewWidget::makeSpinner() {
  auto* const bar = new QProgressBar(spinner_);
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setFixedSize(220, 12);
  spinnerMessage_->setWordWrap(false);
  auto* const layout = new QVBoxLayout(spinner_);
  layout->addWidget(spinnerMessage_, 0, Qt::AlignHCenter);
  layout->addWidget(bar, 0, Qt::AlignHCenter);
  spinner_->setAutoFillBackground(true);
  spinner_->setBackgroundRole(QPalette::Window);
  spinner_->hide();
}

void ReviewWidget::placeSpinner() {
  const QSize size = spinner_->sizeHint() + QSize(24, 12);
  const QRect area = table_->rect();
  spinner_->setGeometry(
      QRect(QPoint(area.center().x() - size.width() / 2, area.bottom() - size.height() - 24), size));
  spinner_->raise();
}

void ReviewWidget::setSummary(const std::optional<std::string>& text) {
  summary_->setVisible(text.has_value());
  summary_->setText(QString::fromStdString(text.value_or(std::string())));
}

void ReviewWidget::setStatus(const std::string& text) {
  status_->setText(QString::fromStdString(text));
}

void ReviewWidget::setDeleteButton(DeleteButton state) {
  deleteButton_->setVisible(state != DeleteButton::hidden);
  deleteButton_->setEnabled(state == DeleteButton::enabled);
}

void ReviewWidget::setSpinner(const std::optional<std::string>& message) {
  spinner_->setVisible(message.has_value());
  if (!message) return;
  spinnerMessage_->setText(QString::fromStdString(*message));
  placeSpinner();
}

void ReviewWidget::pressed(const QModelIndex& proxyIndex) {
  const QModelIndex index = sorted_->mapToSource(proxyIndex);
  if (!index.isValid() || !(model_->flags(index) & Qt::ItemIsEnabled)) return;
  const auto row = static_cast<std::size_t>(index.row());
  const bool reveals = index.column() == ReviewTableModel::revealColumn;
  QTimer::singleShot(0, this, [this, row, reveals] {
    const auto handler = reveals ? events_.revealClicked : events_.quickLookClicked;
    if (handler) handler(row);
  });
}

void ReviewWidget::toggleSelectedRows() {
  const QModelIndex current = sorted_->mapToSource(table_->currentIndex());
  if (!current.isValid()) return;
  const Qt::CheckState state = model_->row(current.row()).isSelected ? Qt::Unchecked : Qt::Checked;
  for (const QModelIndex& selected : table_->selectionModel()->selectedRows(ReviewTableModel::checkColumn)) {
    model_->setData(sorted_->mapToSource(selected), state, Qt::CheckStateRole);
  }
}

bool ReviewWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const QModelIndex current = table_->currentIndex();
    const bool onButton = current.isValid() && isButtonColumn(current.column());
    if (key == Qt::Key_Space && !onButton) {
      toggleSelectedRows();
      return true;
    }
    if (current.isValid() && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)) {
      pressed(current);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void ReviewWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

void ReviewWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (spinner_->isVisible()) placeSpinner();
}

void ReviewWidget::closeEvent(QCloseEvent* event) {
  event->accept();
  QTimer::singleShot(0, this, [this] {
    if (const auto disappeared = std::exchange(events_.viewDidDisappear, nullptr)) disappeared();
  });
}

}  // namespace harbor
