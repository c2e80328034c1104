#pragma once

#include <QByteArray>
#include <QPoint>
#include <QSize>

#include <vector>

namespace nimbrelle {

/// The pointer's picture as the server shows it.
struct CursorPicture {
    QByteArray name; ///< empty where the toolkit gave none
    QSize size;
    QPoint hotSpot;
    std::vector<quint32> pixels; ///< rows from the top, alpha in the highest byte
};

/// Whether it is the pointer of text. Its name decides; without one its shape does: tall, thin in the middle,
/// wide at both ends from the very first row on (an arrow begins with its tip), and pointing with its middle.
bool isTextCursor(const CursorPicture &picture);

} // namespace nimbrelle
