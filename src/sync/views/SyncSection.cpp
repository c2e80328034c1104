#include "sync/views/SyncSection.h"

#include "frame/ConfigStore.h"
#include "sync/SyncConnection.h"
#include "sync/SyncService.h"
#include "sync/SyncStatus.h"
#include "sync/views/QrCode.h"
#include "widgets/Form.h"
#include "widgets/ReadText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds statusEvery{20};

const auto introduction =
    u"连上你自己的同步服务器后，这台 Mac、Windows 电脑和手机上的单词、例句、笔记和复习进度会自动合在一起。"
    "两边都改过也不会丢。"_s;
const auto howItRuns = u"打开 Nimbrelle、存了新词、复习完以后都会自动同步，平时每 10 分钟一次，不用管。"
                       "「复习」里的设置也一起同步；API key 和快捷键每台设备自己设。"_s;
const auto howToHandOn =
    u"在手机 Nimbrelle 的「设置 → 和电脑同步」里，或另一台电脑 Nimbrelle 的「设置 → 同步」里粘贴同步码；"
    "手机也可以用相机扫下面的二维码。同步码里有密码，只发给自己。"_s;

void setText(QPushButton &button, const QString &text)
{
    button.setText(text);
    button.setAccessibleName(text);
}

QWidget *rowOf(const Theme &theme, const QList<QWidget *> &widgets)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, theme.points(6), 0, theme.points(2));
    row->setSpacing(theme.points(8));
    for (QWidget *widget : widgets)
        row->addWidget(widget, 0, Qt::AlignTop);
    row->addStretch();
    return holder;
}

} // namespace

SyncSection::SyncSection(const Parts &parts, QWidget *parent)
    : QWidget(parent), m_parts(parts), m_recheck(parts.clock, statusEvery)
{
    setObjectName(u"syncSection"_s);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    connect(&parts.theme, &Theme::changed, this, &SyncSection::rebuild);
    connect(&parts.config, &ConfigStore::configChanged, this, &SyncSection::rebuildForLink);
    connect(&parts.connection, &SyncConnection::changed, this, &SyncSection::refresh);
    connect(&parts.connection, &SyncConnection::connected, this, [this] { m_input.clear(); });
    connect(&parts.service, &SyncService::changed, this, &SyncSection::refresh);
    connect(&m_recheck, &Recheck::due, this, &SyncSection::refresh);
    rebuild();
}

void SyncSection::showEvent(QShowEvent *)
{
    refresh();
    m_recheck.start();
}

void SyncSection::hideEvent(QHideEvent *)
{
    m_recheck.stop();
}

void SyncSection::rebuildForLink()
{
    if (m_link == m_parts.connection.link())
        return;
    m_showsQr = false;
    rebuild();
}

/// Takes over what the user was at before it goes, for a focus that is lost jumps to the top of the page.
void SyncSection::takeFocusFrom(const FormGroup &old)
{
    const QWidget *focus = window()->focusWidget();
    const bool isHere = focus ? old.isAncestorOf(focus) : awaitsFocus(old);
    if (!isHere)
        return;
    auto *same = focus ? m_group->findChild<QWidget *>(focus->objectName()) : nullptr;
    QWidget *next = same ? same : m_group->findChild<QWidget *>(m_link ? u"copyCode"_s : u"syncCode"_s);
    next->setFocus(Qt::OtherFocusReason);
}

void SyncSection::rebuild()
{
    m_refreshers.clear();
    FormGroup *old = std::exchange(m_group, new FormGroup(m_parts.theme));
    layout()->addWidget(m_group);
    m_link = m_parts.connection.link();
    if (m_link)
        for (FormRow *row : {makeState(*m_link), makeHandingOn(), makeEnd()})
            m_group->add(row);
    else
        m_group->add(makeInput());
    refresh();
    m_group->show();
    if (!old)
        return;
    takeFocusFrom(*old);
    old->hide();
    old->setParent(nullptr);
    old->deleteLater(); // later, since one of its buttons may have brought this about
}

void SyncSection::whenRefreshed(std::function<void()> show)
{
    m_refreshers.append(std::move(show));
}

void SyncSection::refresh()
{
    for (const auto &show : std::as_const(m_refreshers))
        show();
}

FormRow *SyncSection::makeInput()
{
    const Theme &theme = m_parts.theme;
    auto *row = new FormRow(theme);
    row->addNote(u"syncIntroduction"_s, introduction);
    auto *field = makeField(theme, u"syncCode"_s, u"同步码"_s, u"粘贴同步码 nimbrelle://sync?…"_s);
    field->setText(m_input);
    auto *button = makeButton(theme, u"connectSync"_s, u"连接"_s, {});
    button->setFixedHeight(field->minimumHeight());
    QWidget *line = rowOf(theme, {});
    auto *inLine = qobject_cast<QHBoxLayout *>(line->layout());
    inLine->insertWidget(0, field, 1);
    inLine->insertWidget(1, button);
    delete inLine->takeAt(2);
    row->add(line);
    ReadText *message = row->addNote(u"syncMessage"_s, {}, Tone::bad);

    SyncConnection &connection = m_parts.connection;
    const auto start = [&connection, field] { connection.connectTo(field->text()); };
    connect(button, &QPushButton::clicked, this, start);
    connect(field, &QLineEdit::returnPressed, this, start);
    connect(field, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_input = text;
        refresh();
    });
    whenRefreshed([&connection, field, button, message] {
        setText(*button, connection.isConnecting() ? u"连接中…"_s : u"连接"_s);
        setEnabledKeepingFocus(*button, !connection.isConnecting() && !field->text().isEmpty());
        message->setPlain(connection.message().value_or(QString()));
        message->setAccessibleName(connection.message().value_or(QString()));
        message->setVisible(connection.message().has_value());
    });
    return row;
}

FormRow *SyncSection::makeState(const SyncLink &link)
{
    const Theme &theme = m_parts.theme;
    auto *button = makeButton(theme, u"syncNow"_s, u"现在同步"_s, {});
    auto *row = new FormRow(theme, u"已连接 "_s + link.host(), button);
    row->label()->setObjectName(u"syncHost"_s);
    row->line()->insertWidget(0, makeIconLabel(theme, Icon::checkCircleFill, 16, theme.colour(Tone::good)));
    ReadText *status = row->addNote(u"syncStatus"_s, {});
    row->addNote(u"syncExplanation"_s, howItRuns);
    connect(button, &QPushButton::clicked, this, [this] { m_parts.connection.syncNow(); });
    whenRefreshed([this, button, status] {
        const SyncStatus state = SyncStatus::of(m_parts.service);
        setText(*button, state.isBusy ? u"正在同步…"_s : u"现在同步"_s);
        setEnabledKeepingFocus(*button, !state.isBusy);
        const QString text = state.text(m_parts.clock.now());
        if (status->toPlainText() != text)
            status->setPlain(text);
        status->setAccessibleName(text);
    });
    return row;
}

FormRow *SyncSection::makeHandingOn()
{
    const Theme &theme = m_parts.theme;
    auto *row = new FormRow(theme);
    row->add(makeHeading(theme, u"把手机或另一台电脑连上"_s));
    row->addNote(u"syncHandOn"_s, howToHandOn);
    auto *copy = makeButton(theme, u"copyCode"_s, u"复制同步码"_s, {});
    auto *toggle = makeButton(theme, u"toggleQr"_s, u"显示二维码"_s, {});
    row->add(rowOf(theme, {copy, toggle}));
    QWidget *place = rowOf(theme, {});
    row->add(place);
    ReadText *refusal = row->addNote(u"qrRefusal"_s, u"同步码太长，放不进二维码，请用「复制同步码」。"_s);
    connect(copy, &QPushButton::clicked, this, [this] { m_parts.connection.copyCode(); });
    connect(toggle, &QPushButton::clicked, this, [this] {
        m_showsQr = !m_showsQr;
        refresh();
    });
    whenRefreshed([this, copy, toggle, place, refusal] {
        setText(*copy, m_parts.connection.isCopied() ? u"已复制"_s : u"复制同步码"_s);
        setText(*toggle, m_showsQr ? u"隐藏二维码"_s : u"显示二维码"_s);
        showQr(*place, *refusal);
    });
    return row;
}

/// The password stands in it, so it is there only while it is shown.
void SyncSection::showQr(QWidget &place, ReadText &refusal) const
{
    auto *code = place.findChild<QrCode *>();
    if (m_showsQr && !code) {
        code = new QrCode(m_parts.theme, m_link->text());
        code->setObjectName(u"qr"_s);
        qobject_cast<QHBoxLayout *>(place.layout())->insertWidget(0, code, 0, Qt::AlignTop);
        code->show();
    } else if (!m_showsQr) {
        delete std::exchange(code, nullptr);
    }
    place.setVisible(code && !code->isEmpty());
    refusal.setVisible(code && code->isEmpty());
}

FormRow *SyncSection::makeEnd()
{
    auto *row = new FormRow(m_parts.theme);
    auto *button = makeButton(m_parts.theme, u"disconnectSync"_s, u"断开同步"_s, {ButtonKind::soft});
    button->setProperty("quiet", true);
    row->line()->addWidget(button);
    row->line()->addStretch();
    connect(button, &QPushButton::clicked, this, [this] { m_parts.connection.disconnectFromServer(); });
    return row;
}

} // namespace nimbrelle
