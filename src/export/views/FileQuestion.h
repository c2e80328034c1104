#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace nimbrelle {

/// What the desktop's own dialog is asked for.
struct FileQuestion {
    enum class Purpose { open, save };

    Purpose purpose = Purpose::open;
    QString title;
    QString filter; ///< such as "表格 (*.csv)"
    QString name; ///< that a file to save has at first
};

/// Asks in the documents' folder; `then` gets the file, unless the user gives up. Returns at once.
void askForFile(
    QWidget &owner, const FileQuestion &question, const std::function<void(const QString &file)> &then);

} // namespace nimbrelle
