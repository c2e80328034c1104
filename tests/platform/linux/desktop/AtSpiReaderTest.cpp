#include "platform/linux/bus/AtSpiReader.h"

#include "platform/linux/desktop/AccessibleReference.h"
#include "support/Await.h"
#include "support/FakeDesktop.h"

#include <QDBusMetaType>
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

constexpr int linkNumber = 1000; ///< added to that of the element

/// A program on the accessibility bus, in the reader's own thread: it can answer only while nobody holds
/// that. "reluctant" is marked in its text, and no end is found on the way up its tree.
class FakeProgram final : public QDBusVirtualObject {
public:
    explicit FakeProgram(const QString &address) : m_bus(QDBusConnection::connectToBus(address, u"fake"_s))
    {
        qDBusRegisterMetaType<Reference>();
        qDBusRegisterMetaType<QList<Reference>>();
        qDBusRegisterMetaType<QMap<QString, QString>>();
        m_bus.registerVirtualObject(root, this, QDBusConnection::SubPath);
    }
    ~FakeProgram() override { QDBusConnection::disconnectFromBus(u"fake"_s); }

    void takeFocus(int number = 1) { tell(u"StateChanged"_s, u"focused"_s, number); }
    void changeSelection() { tell(u"TextSelectionChanged"_s, QString()); }
    void tell(const QString &news, const QString &detail, int number = 1)
    {
        QDBusMessage event = QDBusMessage::createSignal(
            root + u'/' + QString::number(number), u"org.a11y.atspi.Event.Object"_s, news);
        event << detail << 1 << 0 << QVariant::fromValue(QDBusVariant(0)) << QVariantMap();
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

    /// An element with others in it; an end of the marked text after its start marks it.
    struct Node {
        QString text;
        quint32 role;
        QList<int> children = {};
        int parent = 0;
        int start = 0;
        int end = 0;
        QString tag = {};
        QList<int> links = {}; ///< the children that have a placeholder, where not all have
    };
    QMap<int, Node> nodes; ///< by the last part of their paths

private:
    QVariantList answerTo(const QDBusMessage &question) const
    {
        const QVariantList told = question.arguments();
        const int number = numberOf(question.path());
        const Node node = nodes.value(number, endless(number));
        if (question.member() == u"GetNSelections")
            return {qint32{node.end > node.start}};
        if (question.member() == u"GetSelection")
            return {qint32{node.start}, qint32{node.end}};
        if (question.member() == u"GetText")
            return {node.text.sliced(told[0].toInt()).left(told[1].toInt() - told[0].toInt())};
        if (question.member() == u"Get" && told[1] == u"CharacterCount"_s)
            return {QVariant::fromValue(QDBusVariant(static_cast<qint32>(node.text.size())))};
        if (question.member() == u"Get" && told[1] == u"Parent"_s)
            return {QVariant::fromValue(QDBusVariant(QVariant::fromValue(at(node.parent))))};
        if (question.member() == u"GetChildren") {
            QList<Reference> children;
            for (const int each : node.children)
                children.append(at(each));
            return {QVariant::fromValue(children)};
        }
        if (question.member() == u"GetLink")
            return {QVariant::fromValue(at(linkNumber + node.links.value(told[0].toInt())))};
        if (question.member() == u"GetObject")
            return {QVariant::fromValue(at(number - linkNumber))};
        if (question.member() == u"GetAttributes")
            return {QVariant::fromValue(QMap<QString, QString>{{u"tag"_s, node.tag}})};
        return {node.role};
    }
    static int numberOf(const QString &path) { return path.sliced(path.lastIndexOf(u'/') + 1).toInt(); }
    static Node endless(int number)
    {
        return {.text = text, .role = 61, .parent = number + 1, .start = 8, .end = 17};
    }
    Reference at(int number) const
    {
        return {
            .program = m_bus.baseService(), .object = QDBusObjectPath(root + u'/' + QString::number(number))};
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
        reader = std::make_unique<AtSpiReader>(bus, front);
        ASSERT_TRUE(waitUntil([this] { return reader->bus() == AtSpiReader::Bus::connected; }));
        program = std::make_unique<FakeProgram>(address);
        await(reader->isWebArea(program->element())); // by now the reader's subscription stands
        program->takeFocus();
        ASSERT_TRUE(waitUntil([this] {
            reader->beginGesture();
            return await(reader->focusedElement()) == program->element();
        }));
        await(reader->isWebArea(program->element())); // what the focus made it ask is answered too
        reader->beginGesture();
        program->asked = 0;
    }

    std::optional<MarkedText> marked()
    {
        reader->beginGesture();
        return QCoro::waitFor(reader->markedText(program->element(), 300)); // without pauses
    }
    /// The text that is found round what is marked, with that in brackets.
    std::string context()
    {
        const auto told = marked();
        QString piece = told && told->piece ? told->piece->text : QString();
        if (told && told->piece)
            piece.insert(told->piece->location + told->piece->length, u']')
                .insert(told->piece->location, u'[');
        return piece.toStdString();
    }

    Running<std::optional<AccessibleElement>> askForParent()
    {
        return Running(reader->parent(program->element()));
    }

    FakeFrontApplication front;
    AtSpiBus bus;
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
    EXPECT_EQ(program->asked, 9);
    while (await(reader->parent(program->element())))
        ;
    EXPECT_LE(program->asked, 9 + 5) << "two rounds of questions, and one after another from there on";
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
    EXPECT_LE(program->asked, 7);

    reader->beginGesture();
    auto earlier = askForParent();
    reader->beginGesture(); // while that one is still open
    auto later = Running(reader->isWebArea(program->element()));
    ASSERT_TRUE(waitUntil([this] { return program->asked == 9; }));
    program->wakeUp();
    EXPECT_TRUE(earlier.result());
    EXPECT_EQ(later.result(), false);

    program->isHung = true;
    auto open = askForParent();
    ASSERT_TRUE(waitUntil([this] { return program->asked == 10; }));
    reader.reset();
    program->wakeUp();
    QTest::qWait(50);
    EXPECT_FALSE(open.isDone());
}

TEST_F(AtSpiReaderTest, TheTextOfLinksAndEmphasisStandsInItsSentence)
{
    const QString sentence = u"A cheap \uFFFC of prevention is \uFFFC gold\uFFFC."_s;
    program->nodes[1] = {.text = sentence, .role = 73, .children = {2, 3, 5}, .start = 13, .end = 23};
    program->nodes[2] = {.text = u"ounce"_s, .role = 88, .parent = 1};
    program->nodes[3] = {.text = u"worth \uFFFC in"_s, .role = 116, .children = {4}, .parent = 1};
    program->nodes[4] = {.text = u"its weight"_s, .role = 116, .parent = 3};
    program->nodes[5] = {.text = QString(), .role = 27, .parent = 1};
    EXPECT_EQ(context(), "A cheap ounce of [prevention] is worth its weight in gold.");
    EXPECT_EQ(marked()->text, u"prevention"_s);
    std::swap(program->nodes[1], program->nodes[3]);
    program->nodes[1] = {.text = u"worth \uFFFC in"_s, .role = 116, .children = {4}, .parent = 3, .end = 5};
    program->nodes[3].children = {2, 1, 5};
    program->nodes[3].end = 0;
    EXPECT_EQ(context(), "A cheap ounce of prevention is [worth] its weight in gold.");

    program->nodes[3].children = {6, 2, 7, 1, 5}; // as where pieces of the text itself are elements too
    program->nodes[3].links = {2, 1, 5};
    EXPECT_EQ(context(), "A cheap ounce of prevention is [worth] its weight in gold.");
    program->nodes[3].links = {};
    EXPECT_EQ(context(), "[worth] its weight in") << "it is not clear which is which";
}

TEST_F(AtSpiReaderTest, BlocksStayApartAndTheOneWithTheMarkIsFound)
{
    program->nodes[1] = {.text = u"\uFFFC\uFFFC"_s, .role = 95, .children = {2, 3}, .start = 1, .end = 2};
    program->nodes[2] = {.text = u"A heading"_s, .role = 83, .parent = 1};
    program->nodes[3] = {.text = u"Its text."_s, .role = 73, .parent = 1, .start = 4, .end = 8};
    EXPECT_EQ(context(), "Its [text].");
    program->nodes[1].start = 0;
    EXPECT_EQ(context(), "[A heading\nIts text.]");
    EXPECT_EQ(marked()->text, u"\uFFFC\uFFFC"_s) << "more may be in those than is marked";
}

TEST_F(AtSpiReaderTest, LinesOfALaidOutPageAreJoined)
{
    const auto line = [](const QString &text) {
        return FakeProgram::Node{.text = text, .role = 85, .parent = 9, .tag = u"span"_s};
    };
    program->nodes[2] = line(u"yet the two coun-"_s);
    program->nodes[1] = line(u"tries kept to it. A cheap"_s);
    program->nodes[1].end = 5;
    program->nodes[3] = line(u"ounce is worth"_s);
    program->nodes[4] = {.text = u"Highlight"_s, .role = 63, .parent = 9};
    program->nodes[9] = {.text = u"\uFFFC"_s.repeated(4), .role = 85, .children = {2, 1, 3, 4}};
    EXPECT_EQ(context(), "yet the two coun[tries] kept to it. A cheap ounce is worth");
    program->nodes[1].tag = u"div"_s;
    EXPECT_EQ(context(), "[tries] kept to it. A cheap");
}

TEST_F(AtSpiReaderTest, AChangeOfTheSelectionIsCountedAndAFocusIsNone)
{
    const quint64 before = reader->changeCount();
    EXPECT_EQ(marked()->change, 0u);
    program->changeSelection();
    ASSERT_TRUE(waitUntil([&] { return reader->changeCount() > before; }));
    const quint64 change = reader->changeCount();
    EXPECT_EQ(marked()->change, change);
    program->takeFocus(2);
    ASSERT_TRUE(waitUntil([&] { return reader->changeCount() > change; }));
    program->nodes[2] = {.text = QString(), .role = 69};
    const AccessibleElement window{.program = program->element().program, .object = root + u"/2"_s};
    const auto told = QCoro::waitFor(reader->markedText(window, 300));
    EXPECT_EQ(told->text, u"reluctant"_s) << "where it was last told of";
    EXPECT_EQ(told->change, change);
}

} // namespace

} // namespace nimbrelle
