// The core's texts as the toolkit has to be given them, so that they are shown as they are: no mnemonics, no
// mark-up, no line breaks where one line is meant.
#pragma once

#include <QString>
#include <string>

class QLabel;

namespace harbor {

// One line: control characters (line breaks and tabs among them) and what would turn the direction of the
// text around it become spaces. Bytes that are no UTF-8
// become replacement characters.
QString withoutControls(const std::string& text);

// The first characters as a reader counts them, with an ellipsis where something was cut off.
QString firstCharacters(const QString& text, int count);

// One line for a button or a check box: an ampersand stays an ampersand.
QString withoutMnemonics(const std::string& text);

// Has a label stand where its line of the layout begins, whatever the direction of its text.
void alignWithLayout(QLabel& label);

// For a tool tip: the first 1,000 characters, broken into lines that fit a screen, never taken for mark-up.
QString toolTipText(const std::string& text);

}  // namespace harbor
