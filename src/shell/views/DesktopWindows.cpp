#include "shell/views/DesktopWindows.h"

#include "widgets/Controls.h"
#include "widgets/ReadText.h"
#include "widgets/Theme.h"

#include <QDesktopServices>
#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr double alertWidth = 320;
constexpr double alertMargin = 20;

QDialog *makeAlert(const Theme &theme, const QString &title, const QString &text)
{
    auto *alert = new QDialog;
    alert->setObjectName(u"alert"_s);
    alert->setWindowTitle(u"Nimbrelle"_s);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setFixedWidth(theme.points(alertWidth));
    auto *column = new QVBoxLayout(alert);
    const int margin = theme.points(alertMargin);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(theme.points(6));
    column->addWidget(makeReadText(theme, u"alertTitle"_s, title, title, {.type = TextType::heading}));
    column->addWidget(
        makeReadText(theme, u"alertText"_s, text, text, {.type = TextType::text, .tone = Tone::ink2}));
    column->addSpacing(theme.points(8));
    auto *close = makeButton(theme, u"alertClose"_s, u"好"_s, {.kind = ButtonKind::primary});
    close->setMinimumWidth(theme.points(64));
    close->setFixedHeight(theme.points(34));
    close->setDefault(true);
    QObject::connect(close, &QPushButton::clicked, alert, &QDialog::accept);
    column->addWidget(close, 0, Qt::AlignRight);
    return alert;
}

} // namespace

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
    QDialog *alert = makeAlert(m_theme, title, text);
    alert->open();
    m_focus(alert->winId());
}

void DesktopWindows::openFile(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace nimbrelle
