#include "platform/linux/bus/AtSpiText.h"

#include <QDBusPendingCall>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace atspi;

namespace {

/// Longer texts than anybody looks up are not fetched whole.
constexpr int longestSelection = 20000;
constexpr int deepest = 3; ///< levels of elements in elements, and of those round them
constexpr qsizetype mostEmbedded = 40; ///< asked for at once
constexpr qsizetype mostNeighbours = 20; ///< to each side
constexpr QChar embeddedObject = QChar::ObjectReplacementCharacter;

const QString hypertextInterface = u"org.a11y.atspi.Hypertext"_s;
const QString hyperlinkInterface = u"org.a11y.atspi.Hyperlink"_s;

constexpr quint32 sectionRole = 85;

bool isRoleInText(quint32 role)
{
    constexpr quint32 image = 27, label = 29, link = 88, staticText = 116, subscript = 119, superscript = 120,
                      deletion = 125, insertion = 126, mark = 127;
    constexpr std::array roles{
        image, label, link, staticText, subscript, superscript, deletion, insertion, mark};
    return std::ranges::find(roles, role) != roles.end();
}

/// A span that stands for itself is a piece that a page was laid out in.
FlowingText::Flow flowOf(quint32 role, const QMap<QString, QString> &attributes)
{
    if (isRoleInText(role))
        return FlowingText::Flow::inText;
    const bool isSpan = role == sectionRole && attributes.value(u"tag"_s) == u"span";
    return isSpan ? FlowingText::Flow::line : FlowingText::Flow::block;
}

/// A surrogate pair that was cut in two comes over the bus as a replacement character.
QString withoutHalfAtStart(const QString &text)
{
    return text.startsWith(QChar::ReplacementCharacter) ? text.sliced(1) : text;
}

QString withoutHalfAtEnd(const QString &text)
{
    return text.endsWith(QChar::ReplacementCharacter) ? text.chopped(1) : text;
}

} // namespace

void AtSpiText::prepare(const AccessibleElement &element)
{
    m_questions.askInPassing(element, accessibleInterface, u"GetAttributes"_s);
}

QCoro::Task<std::optional<MarkedText>> AtSpiText::marked(AccessibleElement element, qsizetype reach)
{
    return markedIn(std::move(element), reach, deepest);
}

QCoro::Task<std::optional<MarkedText>> AtSpiText::markedIn(
    AccessibleElement element, qsizetype reach, int depth)
{
    auto askedPlace = placeOf(element);
    const std::optional<Extent> extent = co_await extentOf(element);
    const Place place = co_await askedPlace;
    if (!extent)
        co_return std::nullopt;
    const Range range = extent->around(static_cast<int>(reach));
    const std::optional<Pieces> pieces = co_await piecesOf(element, *extent, range);
    if (!pieces)
        co_return std::nullopt;
    MarkedText marked{.text = pieces->selected, .piece = std::nullopt};
    if (!extent->characters || pieces->selected.isEmpty())
        co_return marked;
    const Embedded embedded = co_await embeddedRound(element, *pieces, range, *extent->characters);
    if (pieces->selected == embeddedObject && depth > 0 && !embedded.elements.isEmpty()) {
        const qsizetype at = embedded.earlier + pieces->left.count(embeddedObject);
        const std::optional<MarkedText> inner = co_await markedIn(embedded.elements[at], reach, depth - 1);
        if (inner && !inner->text.isEmpty())
            co_return inner; // of an element that holds the one with the selection
    }
    TextPiece piece = co_await filled(*pieces, embedded);
    marked.piece = co_await widened(std::move(piece), element, place);
    co_return marked;
}

AtSpiText::Range AtSpiText::Extent::around(int reach) const
{
    // As many characters are at least as many UTF-16 units.
    return {.start = std::max(start - reach, 0), .end = std::min(end + reach, characters.value_or(end))};
}

QCoro::Task<std::optional<AtSpiText::Extent>> AtSpiText::extentOf(AccessibleElement element)
{
    const QVariantList first{qint32{0}};
    auto askedCount = m_questions.ask(element, textInterface, u"GetNSelections"_s);
    auto askedEnds = m_questions.ask(element, textInterface, u"GetSelection"_s, first);
    auto askedCharacters = m_questions.propertyOf(element, textInterface, u"CharacterCount"_s);
    const Answer count = co_await askedCount;
    const Answer ends = co_await askedEnds;
    const std::optional<QVariant> characters = co_await askedCharacters;
    if (!count)
        co_return std::nullopt;
    Extent extent;
    if (characters)
        extent.characters = characters->toInt();
    if (count->value(0).toInt() < 1)
        co_return extent;
    if (!ends || ends->size() < 2)
        co_return std::nullopt;
    const int one = ends->at(0).toInt();
    const int other = ends->at(1).toInt();
    extent.start = std::max(std::min(one, other), 0);
    extent.end = std::min(std::max(one, other), extent.start + longestSelection);
    co_return extent;
}

/// In three pieces, for some toolkits count characters and some UTF-16 units, and the pieces' own lengths are
/// right for both.
QCoro::Task<std::optional<AtSpiText::Pieces>> AtSpiText::piecesOf(
    AccessibleElement element, Extent extent, Range range)
{
    if (extent.end <= extent.start)
        co_return Pieces();
    auto askedLeft = textBetween(element, range.start, extent.start);
    auto askedSelected = textBetween(element, extent.start, extent.end);
    auto askedRight = textBetween(element, extent.end, range.end);
    const std::optional<QString> selected = co_await askedSelected;
    const std::optional<QString> left = co_await askedLeft;
    const std::optional<QString> right = co_await askedRight;
    if (!selected)
        co_return std::nullopt;
    Pieces pieces{
        .left = left.value_or(QString()), .selected = *selected, .right = right.value_or(QString())};
    if (range.start > 0)
        pieces.left = withoutHalfAtStart(pieces.left);
    if (extent.characters && range.end < *extent.characters)
        pieces.right = withoutHalfAtEnd(pieces.right);
    co_return pieces;
}

QCoro::Task<std::optional<QString>> AtSpiText::textBetween(AccessibleElement element, int start, int end)
{
    if (end <= start && end != toEnd)
        co_return QString();
    const QVariantList ends{start, end};
    const Answer answer = co_await m_questions.ask(element, textInterface, u"GetText"_s, ends);
    if (!answer)
        co_return std::nullopt;
    co_return answer->value(0).toString();
}

/// The elements of the whole text, for they are told apart by their order alone.
QCoro::Task<AtSpiText::Embedded> AtSpiText::embeddedRound(
    AccessibleElement element, Pieces pieces, Range range, int characters)
{
    Embedded embedded;
    const QString known = pieces.left + pieces.selected + pieces.right;
    if (!known.contains(embeddedObject))
        co_return embedded;
    auto askedBefore = textBetween(element, 0, range.start);
    auto askedAfter = textBetween(element, range.end, characters);
    const std::optional<QString> before = co_await askedBefore;
    const std::optional<QString> after = co_await askedAfter;
    if (!before || !after)
        co_return embedded;
    embedded.earlier = before->count(embeddedObject);
    const qsizetype later = after->count(embeddedObject);
    embedded.elements = co_await elementsIn(element, embedded.earlier + known.count(embeddedObject) + later);
    co_return embedded;
}

/// The elements that `count` placeholders stand for; none when it is not clear which.
QCoro::Task<Elements> AtSpiText::elementsIn(AccessibleElement element, qsizetype count)
{
    if (count == 0)
        co_return {};
    const Answer answer = co_await m_questions.ask(element, accessibleInterface, u"GetChildren"_s);
    Elements children = elementsOf(answer);
    if (children.size() != count) // pieces of the text itself are among them
        children = co_await linksIn(element, count);
    co_return children;
}

QCoro::Task<Elements> AtSpiText::linksIn(AccessibleElement element, qsizetype count)
{
    Elements linked;
    if (count > mostEmbedded)
        co_return linked;
    std::vector<QCoro::Task<Answer>> askedLinks;
    for (qint32 i = 0; i < count; ++i) {
        const QVariantList number{i};
        askedLinks.push_back(m_questions.ask(element, hypertextInterface, u"GetLink"_s, number));
    }
    std::vector<QCoro::Task<Answer>> askedElements;
    for (QCoro::Task<Answer> &each : askedLinks) {
        const Answer answer = co_await each;
        const QVariantList first{qint32{0}};
        if (const auto link = elementOf(answer.value_or(QVariantList()).value(0)))
            askedElements.push_back(m_questions.ask(*link, hyperlinkInterface, u"GetObject"_s, first));
    }
    for (QCoro::Task<Answer> &each : askedElements) {
        const Answer answer = co_await each;
        if (const auto target = elementOf(answer.value_or(QVariantList()).value(0)))
            linked.append(*target);
    }
    if (linked.size() != count)
        linked.clear();
    co_return linked;
}

QCoro::Task<TextPiece> AtSpiText::filled(Pieces pieces, Embedded embedded)
{
    Elements rest = embedded.elements.mid(embedded.earlier);
    const auto take = [&rest](const QString &text) {
        const Elements taken = rest.first(std::min(text.count(embeddedObject), rest.size()));
        rest = rest.mid(taken.size());
        return taken;
    };
    const Elements inLeft = take(pieces.left);
    const Elements inSelected = take(pieces.selected);
    const Elements inRight = take(pieces.right);
    FlowingText flowing;
    flowing = co_await addFilled(std::move(flowing), pieces.left, inLeft, deepest);
    const qsizetype location = flowing.text().size();
    flowing = co_await addFilled(std::move(flowing), pieces.selected, inSelected, deepest);
    const qsizetype length = flowing.text().size() - location;
    flowing = co_await addFilled(std::move(flowing), pieces.right, inRight, deepest);
    co_return TextPiece{.text = flowing.text(), .location = location, .length = length};
}

QCoro::Task<FlowingText> AtSpiText::addFilled(
    FlowingText to, QString text, Elements embedded, int depth, FlowingText::Flow widest)
{
    const QStringList parts = text.split(embeddedObject);
    if (parts.size() != embedded.size() + 1 || embedded.size() > mostEmbedded || depth == 0) {
        to.add(text, FlowingText::Flow::inText);
        co_return to;
    }
    std::vector<QCoro::Task<Content>> asked;
    for (const AccessibleElement &each : embedded)
        asked.push_back(contentOf(each, depth - 1));
    for (qsizetype i = 0; i < embedded.size(); ++i) {
        to.add(parts[i], FlowingText::Flow::inText);
        const Content content = co_await asked[static_cast<std::size_t>(i)];
        if (content.flow <= widest)
            to.add(content.text, content.flow);
    }
    to.add(parts.last(), FlowingText::Flow::inText);
    co_return to;
}

QCoro::Task<AtSpiText::Content> AtSpiText::contentOf(AccessibleElement element, int depth)
{
    auto askedPlace = placeOf(element);
    const std::optional<QString> text = co_await textBetween(element, 0, toEnd);
    const Place place = co_await askedPlace;
    if (!text)
        co_return Content{.text = embeddedObject, .flow = FlowingText::Flow::inText};
    const Elements embedded = co_await elementsIn(element, text->count(embeddedObject));
    FlowingText flowing;
    flowing = co_await addFilled(std::move(flowing), *text, embedded, depth);
    co_return Content{.text = flowing.text(), .flow = place.flow};
}

QCoro::Task<AtSpiText::Place> AtSpiText::placeOf(AccessibleElement element)
{
    auto askedRole = m_questions.ask(element, accessibleInterface, u"GetRole"_s);
    auto askedAttributes = m_questions.ask(element, accessibleInterface, u"GetAttributes"_s);
    auto askedParent = m_questions.propertyOf(element, accessibleInterface, u"Parent"_s);
    const Answer role = co_await askedRole;
    const Answer attributes = co_await askedAttributes;
    const std::optional<QVariant> parent = co_await askedParent;
    Place place;
    if (role)
        place.flow = flowOf(role->value(0).toUInt(),
            qdbus_cast<QMap<QString, QString>>(attributes.value_or(QVariantList()).value(0)));
    place.parent = elementOf(parent.value_or(QVariant()));
    co_return place;
}

/// With what stands beside the element in those round it, as far up as the text goes on there.
QCoro::Task<TextPiece> AtSpiText::widened(TextPiece piece, AccessibleElement element, Place place)
{
    for (int level = 0; level < deepest && place.parent && place.flow != FlowingText::Flow::block; ++level) {
        const AccessibleElement parent = *place.parent;
        auto askedPlace = placeOf(parent);
        const std::optional<QString> text = co_await textBetween(parent, 0, toEnd);
        const Place above = co_await askedPlace;
        const QStringList parts = text.value_or(QString()).split(embeddedObject);
        const Elements children = co_await elementsIn(parent, parts.size() - 1);
        const qsizetype at = children.indexOf(element);
        if (at < 0)
            break;
        const qsizetype before = std::min(at, mostNeighbours);
        const QString left = parts.sliced(at - before, before + 1).join(embeddedObject);
        const QString right =
            parts.sliced(at + 1, std::min(parts.size() - at - 1, mostNeighbours + 1)).join(embeddedObject);
        const Elements inLeft = children.sliced(at - before, before);
        const Elements inRight = children.sliced(at + 1, right.count(embeddedObject));
        // Among lines, buttons for instance are no text.
        const bool isLine = place.flow == FlowingText::Flow::line;
        const FlowingText::Flow widest = isLine ? FlowingText::Flow::line : FlowingText::Flow::block;
        FlowingText flowing;
        flowing = co_await addFilled(std::move(flowing), left, inLeft, deepest, widest);
        flowing.add(piece.text, place.flow);
        piece.location += flowing.text().size() - piece.text.size();
        flowing = co_await addFilled(std::move(flowing), right, inRight, deepest, widest);
        piece.text = flowing.text();
        element = parent;
        place = above;
    }
    co_return piece;
}

} // namespace nimbrelle
