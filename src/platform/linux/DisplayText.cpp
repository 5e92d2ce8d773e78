#include "platform/linux/DisplayText.h"

#include <QLabel>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <QTextDocument>

namespace harbor {
namespace {

constexpr int kToolTipCharacters = 1000;
constexpr int kToolTipColumns = 100;

// What turns the direction of the text around it: in the name of a file it makes "gnp.exe" read as "exe.png".
bool turnsDirection(QChar character) {
  return (character >= QChar(0x202a) && character <= QChar(0x202e)) ||
         (character >= QChar(0x2066) && character <= QChar(0x2069));
}

bool isControl(QChar character) {
  return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator || turnsDirection(character);
}

// Breaks lines that are too long, after white space where there is some.
QString folded(const QString& text) {
  QStringList result;
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, line);
    qsizetype start = 0;
    qsizetype lastSpace = 0;
    int column = 0;
    for (qsizetype at = 0; at >= 0 && at < line.size(); at = finder.toNextBoundary()) {
      if (column >= kToolTipColumns) {
        const qsizetype end = lastSpace > start ? lastSpace : at;
        result += line.mid(start, end - start);
        column = static_cast<int>(at - end);
        start = end;
      }
      if (line.at(at).isSpace()) lastSpace = at + 1;
      ++column;
    }
    result += line.mid(start);
  }
  return result.join(QLatin1Char('\n'));
}

}  // namespace

QString withoutControls(const std::string& text) {
  QString line = QString::fromStdString(text);
  for (QChar& character : line) {
    if (isControl(character)) character = QLatin1Char(' ');
  }
  return line;
}

QString firstCharacters(const QString& text, int count) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype end = 0;
  for (int character = 0; character < count; ++character) {
    const qsizetype next = finder.toNextBoundary();
    if (next < 0) return text;
    end = next;
  }
  return end < text.size() ? text.left(end) + QChar(0x2026) : text;
}

QString withoutMnemonics(const std::string& text) {
  return withoutControls(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

void alignWithLayout(QLabel& label) {
  label.setAlignment(QStyle::visualAlignment(label.layoutDirection(), label.alignment()) | Qt::AlignAbsolute);
}

QString toolTipText(const std::string& text) {
  QString tip = QString::fromStdString(text);
  for (QChar& character : tip) {
    if (isControl(character) && character != QLatin1Char('\n')) character = QLatin1Char(' ');
  }
  tip = folded(firstCharacters(tip, kToolTipCharacters));
  return Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip;
}

}  // namespace harbor
