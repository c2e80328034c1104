#include "shell/views/DesktopWindows.h"

#include "shell/views/AddWordView.h"
#include "shell/views/Controls.h"
#include "shell/views/Theme.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct WindowKind {
    const char *name;
    QStringView title;
    QSize points;
};

// In the order of Kind.
constexpr std::array kinds{
    WindowKind{"settingsWindow", u"Nimbrelle 设置", {520, 560}},
    WindowKind{"wordsWindow", u"生词本", {760, 520}},
    WindowKind{"addWordWindow", u"查词", {460, 220}},
    WindowKind{"reviewWindow", u"复习", {500, 480}},
    WindowKind{"spellingWindow", u"拼写练习", {500, 480}},
    WindowKind{"coachWindow", u"AI 教练", {500, 680}},
    WindowKind{"askWindow", u"问 AI", {460, 600}},
};

void followWish(AddWordView &view)
{
    QObject::connect(&view, &AddWordView::wishedHeightChanged, &view, [&view](int height) {
        view.resize(boundedByScreen(view, {view.width(), height}));
    });
}

void closeBy(QWidget &window, const QKeySequence &key)
{
    QObject::connect(new QShortcut(key, &window), &QShortcut::activated, &window, &QWidget::close);
}

} // namespace

DesktopWindows::DesktopWindows(const Theme &theme, Contents contents, std::function<void(WId)> focus)
    : m_theme(theme), m_contents(std::move(contents)), m_focus(std::move(focus))
{
}

DesktopWindows::~DesktopWindows()
{
    for (const auto &each : m_windows)
        delete each;
}

QWidget *DesktopWindows::make(Kind kind) const
{
    const std::array makers{m_contents.settings, m_contents.words, m_contents.addWord, m_contents.review,
        m_contents.review, m_contents.coach, m_contents.ask};
    const auto at = static_cast<std::size_t>(kind);
    QWidget *window = makers.at(at)();
    window->setObjectName(QString::fromLatin1(kinds.at(at).name));
    window->setWindowTitle(kinds.at(at).title.toString());
    const QSize points = kinds.at(at).points;
    window->resize(
        boundedByScreen(*window, {m_theme.points(points.width()), m_theme.points(points.height())}));
    closeBy(*window, Qt::CTRL | Qt::Key_W);
    if (auto *view = qobject_cast<AddWordView *>(window)) {
        followWish(*view);
        closeBy(*window, Qt::Key_Escape);
    }
    return window;
}

void DesktopWindows::show(Kind kind)
{
    if (!window(kind))
        window(kind) = make(kind);
    QWidget &shown = *window(kind);
    shown.setWindowState(shown.windowState() & ~Qt::WindowMinimized);
    shown.show();
    shown.raise();
    shown.activateWindow();
    m_focus(shown.winId());
}

void DesktopWindows::showSettings()
{
    show(Kind::settings);
}

void DesktopWindows::showWords()
{
    show(Kind::words);
}

void DesktopWindows::showAddWord()
{
    show(Kind::addWord);
}

void DesktopWindows::showReview()
{
    if (QWidget *other = window(Kind::spelling)) // both show the one session
        other->hide();
    show(Kind::review);
}

void DesktopWindows::showSpelling()
{
    if (QWidget *other = window(Kind::review))
        other->hide();
    show(Kind::spelling);
}

void DesktopWindows::showCoach()
{
    show(Kind::coach);
}

void DesktopWindows::showAsk()
{
    show(Kind::ask);
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
