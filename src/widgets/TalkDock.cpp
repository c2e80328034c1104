#include "widgets/TalkDock.h"

#include "frame/Text.h"
#include "widgets/Controls.h"
#include "widgets/ReadText.h"
#include "widgets/TalkField.h"

#include <QEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double fadeWidth = 36;
constexpr double chipHeight = 26;
constexpr double sendSize = 30;
constexpr double sendIconSize = 28;

/// Fades what lies below it into the background of the window.
class Fade : public QWidget {
public:
    Fade(const Theme &theme, QWidget *parent) : QWidget(parent), m_theme(theme)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QLinearGradient gradient(0, 0, width(), 0);
        gradient.setColorAt(0, m_theme.colour(Tone::paper, 0));
        gradient.setColorAt(1, m_theme.colour(Tone::paper));
        QPainter(this).fillRect(rect(), gradient);
    }

private:
    const Theme &m_theme;
};

QPushButton *makeSendButton(const Theme &theme, const QString &name, const QString &label, Icon icon)
{
    auto *button = makeIconButton(theme, name, label, icon, sendIconSize);
    button->setProperty("kind", u"send"_s);
    button->setFixedSize(theme.points(sendSize), theme.points(sendSize));
    const int size = theme.points(sendIconSize);
    const double ratio = qGuiApp->devicePixelRatio();
    QIcon picture(iconPixmap(icon, size, ratio, theme.colour(Tone::ink), theme.colour(Tone::paper)));
    picture.addPixmap(
        iconPixmap(icon, size, ratio, theme.colour(Tone::borderStrong), theme.colour(Tone::paper)),
        QIcon::Disabled);
    button->setIcon(picture);
    return button;
}

} // namespace

ChipRow::ChipRow(const Theme &theme, double margin)
    : m_theme(theme), m_margin(margin), m_fade(new Fade(theme, this))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    setFixedHeight(theme.points(chipHeight));
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &ChipRow::fit);
}

void ChipRow::setChips(const QList<QPushButton *> &chips)
{
    if (QWidget *old = takeWidget())
        old->deleteLater();
    auto *content = new QWidget;
    auto *row = new QHBoxLayout(content);
    row->setContentsMargins(m_theme.points(m_margin), 0, m_theme.points(m_margin), 0);
    row->setSpacing(m_theme.points(6));
    for (QPushButton *chip : chips) {
        chip->installEventFilter(this);
        row->addWidget(chip);
    }
    content->setAutoFillBackground(false);
    content->resize(row->sizeHint().width(), height());
    setWidget(content);
    content->setAutoFillBackground(false); // which setWidget() sets
    content->show();
    fit();
}

void ChipRow::fit()
{
    const QScrollBar &bar = *horizontalScrollBar();
    m_fade->setGeometry(width() - m_theme.points(fadeWidth), 0, m_theme.points(fadeWidth), height());
    m_fade->setVisible(bar.value() < bar.maximum());
    m_fade->raise();
}

void ChipRow::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fit();
}

void ChipRow::wheelEvent(QWheelEvent *event)
{
    const QPoint turned = event->angleDelta();
    const int delta = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta / 2);
    event->accept();
}

bool ChipRow::eventFilter(QObject *watched, QEvent *event)
{
    auto *chip = qobject_cast<QPushButton *>(watched);
    if (chip && event->type() == QEvent::FocusIn)
        ensureWidgetVisible(chip, m_theme.points(fadeWidth), 0);
    return QScrollArea::eventFilter(watched, event);
}

TalkDock::TalkDock(const Theme &theme, const Look &look)
    : m_theme(theme), m_chips(new ChipRow(theme, look.margin))
{
    m_errorRow = makeErrorRow();
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, theme.points(14));
    rows->setSpacing(theme.points(10));
    rows->addWidget(makeLine());
    m_errorRow->setContentsMargins(theme.points(look.margin), 0, theme.points(look.margin), 0);
    rows->addSpacing(theme.points(4));
    rows->addWidget(m_errorRow);
    rows->addWidget(m_chips);
    rows->addWidget(makeInputRow(look));
    setAnswering(false);
    setError({});
}

QWidget *TalkDock::makeErrorRow()
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(m_theme.points(10));
    m_error = new ReadText(m_theme, {.type = TextType::small, .tone = Tone::bad});
    m_error->setObjectName(u"error"_s);
    m_error->setAccessibleName(u"出错了"_s);
    row->addWidget(m_error, 1, Qt::AlignVCenter);
    return holder;
}

QWidget *TalkDock::makeInputRow(const Look &look)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(m_theme.points(look.margin), 0, m_theme.points(look.margin), 0);
    row->setSpacing(m_theme.points(8));
    m_field = new TalkField(m_theme, look.fieldName, look.placeholder);
    setFocusProxy(m_field);
    m_send = makeSendButton(m_theme, u"send"_s, u"发送（回车）"_s, Icon::arrowUp);
    m_stop = makeSendButton(m_theme, u"stop"_s, u"停止"_s, Icon::stop);
    row->addWidget(m_field, 1);
    row->addWidget(m_send);
    row->addWidget(m_stop);
    connect(m_field, &TalkField::textChanged, this, [this] {
        refreshSend();
        emit inputEdited(m_field->text());
    });
    connect(m_field, &TalkField::submitted, this, &TalkDock::sendPressed);
    connect(m_send, &QPushButton::clicked, this, &TalkDock::sendPressed);
    connect(m_stop, &QPushButton::clicked, this, &TalkDock::stopPressed);
    return holder;
}

QPushButton *TalkDock::makeQuestionChip(const QString &name, const QString &text)
{
    auto *chip = makeButton(m_theme, name, text, {.kind = ButtonKind::dockChip});
    // Before the chip is disabled, which would send the focus anywhere.
    connect(chip, &QPushButton::clicked, this, &TalkDock::focusField);
    return chip;
}

void TalkDock::setChips(const QList<QPushButton *> &questions, const QList<QPushButton *> &others)
{
    m_questions = questions;
    m_chips->setChips(questions + others);
    refreshQuestions();
}

void TalkDock::refreshQuestions()
{
    for (QPushButton *chip : std::as_const(m_questions))
        chip->setEnabled(!m_isAnswering);
}

void TalkDock::setError(const QString &text, QPushButton *retry)
{
    if (m_retry) {
        m_retry->hide();
        m_retry->deleteLater(); // it may be what was pressed
    }
    m_retry = retry;
    if (retry) {
        m_errorRow->layout()->addWidget(retry);
        m_errorRow->layout()->setAlignment(retry, Qt::AlignLeft); // where it stands alone
    }
    m_error->setPlain(text);
    m_error->setVisible(!text.isEmpty());
    m_errorRow->setVisible(retry || !text.isEmpty());
}

void TalkDock::setInput(const QString &text)
{
    m_field->setText(text);
}

void TalkDock::setAnswering(bool isAnswering)
{
    m_isAnswering = isAnswering;
    refreshQuestions();
    const bool hadFocus = m_send->hasFocus() || m_stop->hasFocus();
    m_send->setVisible(!isAnswering);
    m_stop->setVisible(isAnswering);
    refreshSend();
    if (hadFocus)
        focusField();
}

void TalkDock::refreshSend()
{
    m_send->setEnabled(!trimmedSpace(m_field->text()).isEmpty());
}

void TalkDock::focusField()
{
    m_field->setFocus(Qt::OtherFocusReason);
}

} // namespace nimbrelle
