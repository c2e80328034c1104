#include "platform/linux/bus/AtSpiReader.h"

#include "support/Await.h"
#include "support/FakeDesktop.h"

#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTimer>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto root = u"/org/a11y/atspi/accessible"_s;
const auto text = u"She was reluctant to post this."_s;

/// A program on the accessibility bus, in the reader's own thread: it can answer only while nobody holds
/// that. "reluctant" is marked in its text, and no end is found on the way up its tree.
class FakeProgram final : public QDBusVirtualObject {
public:
    explicit FakeProgram(const QString &address) : m_bus(QDBusConnection::connectToBus(address, u"fake"_s))
    {
        m_bus.registerVirtualObject(root, this, QDBusConnection::SubPath);
    }
    ~FakeProgram() override { QDBusConnection::disconnectFromBus(u"fake"_s); }

    void takeFocus()
    {
        QDBusMessage event =
            QDBusMessage::createSignal(root + u"/1"_s, u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s);
        event << u"focused"_s << 1 << 0 << QVariant::fromValue(QDBusVariant(0)) << QVariantMap();
        m_bus.send(event);
    }
    /// Gives the answers that it kept back.
    void wakeUp()
    {
        isHung = false;
        for (const QDBusMessage &each : std::exchange(m_kept, {}))
            m_bus.send(each);
    }
    AccessibleElement element() const { return {.program = m_bus.baseService(), .object = root + u"/1"_s}; }

    bool handleMessage(const QDBusMessage &question, const QDBusConnection &bus) override
    {
        question.setDelayedReply(true);
        ++asked;
        const QDBusMessage answer = question.createReply(answerTo(question));
        if (isHung)
            m_kept.append(answer);
        else
            QTimer::singleShot(delay, this, [bus, answer] { bus.send(answer); });
        return true;
    }
    QString introspect(const QString &) const override { return {}; }

    std::chrono::milliseconds delay{0};
    bool isHung = false;
    int asked = 0;

private:
    QVariantList answerTo(const QDBusMessage &question) const
    {
        const QVariantList told = question.arguments();
        if (question.member() == u"GetNSelections")
            return {qint32{1}};
        if (question.member() == u"GetSelection")
            return {qint32{8}, qint32{17}};
        if (question.member() == u"GetText")
            return {text.sliced(told[0].toInt(), told[1].toInt() - told[0].toInt())};
        if (question.member() == u"Get" && told[1] == u"CharacterCount"_s)
            return {QVariant::fromValue(QDBusVariant(static_cast<qint32>(text.size())))};
        if (question.member() == u"Get" && told[1] == u"Parent"_s)
            return {QVariant::fromValue(QDBusVariant(above(question.path())))};
        return {quint32{61}}; // the role
    }
    QVariant above(const QString &path) const
    {
        const int level = path.sliced(path.lastIndexOf(u'/') + 1).toInt();
        QDBusArgument place;
        place.beginStructure();
        place << m_bus.baseService() << QDBusObjectPath(root + u'/' + QString::number(level + 1));
        place.endStructure();
        return QVariant::fromValue(place);
    }

    QDBusConnection m_bus;
    QList<QDBusMessage> m_kept;
};

class AtSpiReaderTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QDBusMessage ask = QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
        const QDBusReply<QString> address = QDBusConnection::sessionBus().call(ask);
        ASSERT_TRUE(address.isValid());
        front.front = Application{.process = QCoreApplication::applicationPid()};
        reader = std::make_unique<AtSpiReader>(front);
        ASSERT_TRUE(waitUntil([this] { return reader->bus() == AtSpiReader::Bus::connected; }));
        program = std::make_unique<FakeProgram>(address);
        await(reader->isWebArea(program->element())); // by now the reader's subscription stands
        program->takeFocus();
        ASSERT_TRUE(waitUntil([this] {
            reader->beginGesture();
            return await(reader->focusedElement()) == program->element();
        }));
        reader->beginGesture();
        program->asked = 0;
    }

    Running<std::optional<AccessibleElement>> askForParent()
    {
        return Running(reader->parent(program->element()));
    }

    FakeFrontApplication front;
    std::unique_ptr<AtSpiReader> reader;
    std::unique_ptr<FakeProgram> program;
};

TEST_F(AtSpiReaderTest, ASlowProgramIsWaitedForThreeTenthsOfASecondInAll)
{
    program->delay = 50ms; // it answers at all, so the main thread is free
    const std::optional<MarkedText> marked = await(reader->markedText(program->element(), 4));
    ASSERT_TRUE(marked && marked->piece);
    EXPECT_EQ(marked->text, u"reluctant"_s);
    EXPECT_EQ(*marked->piece, (TextPiece{.text = u"was reluctant to "_s, .location = 4, .length = 9}));
    EXPECT_EQ(program->asked, 6);
    while (await(reader->parent(program->element())))
        ;
    EXPECT_LE(program->asked, 6 + 5) << "two rounds of questions, and one after another from there on";
    const int asked = program->asked;
    EXPECT_TRUE(askForParent().isDone()) << "at once";
    reader->beginGesture();
    EXPECT_TRUE(askForParent().result());
    EXPECT_EQ(program->asked, asked + 1);
}

TEST_F(AtSpiReaderTest, WhatAGestureDoesElsewhereIsNoWaiting)
{
    EXPECT_TRUE(askForParent().result());
    QTest::qWait(350); // the screen is being read
    EXPECT_TRUE(askForParent().result());
}

TEST_F(AtSpiReaderTest, AHungProgramsLateAnswerReachesNobody)
{
    program->isHung = true;
    auto first = askForParent();
    auto second = Running(reader->markedText(program->element(), 300));
    EXPECT_EQ(first.result(), std::nullopt);
    EXPECT_EQ(second.result(), std::nullopt);
    EXPECT_TRUE(askForParent().isDone());
    EXPECT_LE(program->asked, 4);

    reader->beginGesture();
    auto earlier = askForParent();
    reader->beginGesture(); // while that one is still open
    auto later = Running(reader->isWebArea(program->element()));
    ASSERT_TRUE(waitUntil([this] { return program->asked == 6; }));
    program->wakeUp();
    EXPECT_TRUE(earlier.result());
    EXPECT_EQ(later.result(), false);

    program->isHung = true;
    auto open = askForParent();
    ASSERT_TRUE(waitUntil([this] { return program->asked == 7; }));
    reader.reset();
    program->wakeUp();
    QTest::qWait(50);
    EXPECT_FALSE(open.isDone());
}

} // namespace

} // namespace nimbrelle
