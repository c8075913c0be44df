// ToolTip.h - tool tips that show a text of any length in full.
#pragma once

#include <QString>
#include <QTextDocument>

// Qt breaks the lines of rich text only: a plain one would run off the screen. The result shows
// `text` as it is.
inline QString WrappedToolTip(const QString& text) {
    return text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}
