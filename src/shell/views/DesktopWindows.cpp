#include "shell/views/DesktopWindows.h"

#include "widgets/Controls.h"
#include "widgets/Theme.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

DesktopWindows::DesktopWindows(
    const Theme &theme, const std::vector<WindowRow> &rows, std::function<void(WId)> focus)
    : m_theme(theme), m_focus(std::move(focus))
{
    for (const WindowRow &row : rows)
        m_entries.push_back({.row = row, .window = nullptr});
}

DesktopWindows::~DesktopWindows()
{
    for (const Entry &each : m_entries)
        delete each.window;
}

DesktopWindows::Entry &DesktopWindows::entryOf(WindowKind kind)
{
    return *std::ranges::find(m_entries, kind, [](const Entry &entry) { return entry.row.kind; });
}

QWidget *DesktopWindows::make(const WindowRow &row) const
{
    QWidget *window = row.make();
    window->setObjectName(row.name);
    window->setWindowTitle(row.title);
    window->resize(
        boundedByScreen(*window, {m_theme.points(row.size.width()), m_theme.points(row.size.height())}));
    auto *close = new QShortcut(Qt::CTRL | Qt::Key_W, window);
    QObject::connect(close, &QShortcut::activated, window, &QWidget::close);
    return window;
}

void DesktopWindows::show(WindowKind kind)
{
    Entry &entry = entryOf(kind);
    if (entry.row.replaces)
        if (QWidget *other = entryOf(*entry.row.replaces).window)
            other->hide();
    if (!entry.window)
        entry.window = make(entry.row);
    QWidget &window = *entry.window;
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    m_focus(window.winId());
}

void DesktopWindows::showAlert(const QString &title, const QString &text)
{
    auto *alert = new QMessageBox(QMessageBox::Information, u"Nimbrelle"_s, title, QMessageBox::Ok);
    alert->setObjectName(u"alert"_s);
    alert->setInformativeText(text);
    alert->button(QMessageBox::Ok)->setText(u"好"_s);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->open();
    m_focus(alert->winId());
}

void DesktopWindows::openFile(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace nimbrelle
