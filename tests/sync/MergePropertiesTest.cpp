#include "support/Printers.h"
#include "sync/BundleForm.h"
#include "sync/Content.h"
#include "sync/MergeLists.h"
#include "sync/RandomLearner.h"
#include "sync/Seeds.h"
#include "sync/SyncMerge.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

// Bundles that the program could have made: two devices start from one notebook and go on learning, each by
// itself, now and then taking over what the other has. A failure prints the shortest script that still fails.
namespace {

/// What the two devices do in turn; each number is one action.
using Script = std::vector<quint32>;

struct Bundles {
    SyncBundle a, b;
    SyncBundle common; ///< what the two last had in common
};

void exchange(Device &from, Device &to, SyncBundle &common)
{
    common = SyncMerge::merge(BundleForm::normalized(to.document()), BundleForm::normalized(from.document()));
    to.store().applySync(common);
    from.store().applySync(common);
}

Bundles play(const Script &script)
{
    Device devices[]{Device(1), Device(2)};
    SyncBundle common;
    for (const quint32 action : script) {
        Random random(action);
        Device &device = devices[random.below(2)];
        for (Device &each : devices)
            each.clock.advance(std::chrono::seconds{1 + random.below(40'000)});
        if (random.oneIn(30))
            exchange(device, devices[&device == &devices[0] ? 1 : 0], common);
        else
            learn(device, action);
    }
    return {
        BundleForm::normalized(devices[0].document()), BundleForm::normalized(devices[1].document()), common};
}

/// Empty while the property holds.
using Property = std::string (*)(const Bundles &bundles);

Script shortened(Script script, Property property)
{
    for (std::size_t size = script.size() / 2; size > 0; size /= 2) {
        for (std::size_t at = 0; at + size <= script.size();) {
            Script shorter = script;
            const auto from = shorter.begin() + static_cast<std::ptrdiff_t>(at);
            shorter.erase(from, from + static_cast<std::ptrdiff_t>(size));
            if (property(play(shorter)).empty())
                at += size;
            else
                script = shorter;
        }
    }
    return script;
}

struct Played {
    quint32 seed;
    Script script;
    Bundles bundles;
};

Played playedFor(quint32 seed)
{
    Random random(seed);
    Script script(5 + random.below(80));
    for (quint32 &action : script)
        action = random.below(1'000'000);
    return {seed, script, play(script)};
}

// All properties look at the same scripts.
const std::vector<Played> &allPlayed()
{
    static const std::vector<Played> all = [] {
        std::vector<Played> played;
        for (quint32 i = 0; i < static_cast<quint32>(Seeds::steps(2000) / 40); ++i)
            played.push_back(playedFor(Seeds::first() + i));
        return played;
    }();
    return all;
}

void check(Property property)
{
    for (const auto &[seed, script, bundles] : allPlayed()) {
        if (property(bundles).empty())
            continue;
        const Script shorter = shortened(script, property);
        FAIL() << property(play(shorter)) << "\nwith " << Seeds::variable << "=" << seed
               << " and the actions " << testing::PrintToString(shorter);
    }
}

std::string unlessSame(const SyncBundle &one, const SyncBundle &other, const char *what)
{
    const QByteArray a = BundleForm::json(one), b = BundleForm::json(other);
    if (a == b)
        return {};
    const auto differ = std::mismatch(a.cbegin(), a.cend(), b.cbegin(), b.cend()).first - a.cbegin();
    const auto from = std::max<qsizetype>(0, differ - 200);
    return std::string(what) + ":\n" + a.mid(from, 400).toStdString() + "\nagainst\n"
        + b.mid(from, 400).toStdString();
}

std::string isIdempotentAndAbsorbing(const Bundles &bundles)
{
    const SyncBundle merged = SyncMerge::merge(bundles.a, bundles.b);
    for (const auto &[again, what] : {std::pair(SyncMerge::merge(merged, merged), "merged with itself"),
             std::pair(SyncMerge::merge(merged, bundles.a), "merged with the first"),
             std::pair(SyncMerge::merge(merged, bundles.b), "merged with the second")}) {
        if (const std::string difference = unlessSame(merged, again, what); !difference.empty())
            return difference;
    }
    return {};
}

// A copy that the other device changed too goes back to what both had.
QList<WordEntry> withOneHistory(
    const QList<WordEntry> &words, const QList<WordEntry> &others, const QList<WordEntry> &common)
{
    const auto find = [](const QList<WordEntry> &list, const QUuid &id) {
        const auto found = std::find_if(
            list.cbegin(), list.cend(), [&id](const WordEntry &entry) { return entry.id == id; });
        return found == list.cend() ? std::nullopt : std::optional(*found);
    };
    QList<WordEntry> result;
    for (const WordEntry &word : words) {
        const auto other = find(others, word.id), before = find(common, word.id);
        const bool isChangedTwice = other && before && *other != *before && word != *before;
        result.append(isChangedTwice ? *before : word);
    }
    return result;
}

std::string isCommutative(const Bundles &bundles)
{
    SyncBundle b = bundles.b;
    b.words = withOneHistory(b.words, bundles.a.words, bundles.common.words);
    return unlessSame(SyncMerge::merge(bundles.a, b), SyncMerge::merge(b, bundles.a), "the other way round");
}

SyncMerge::Dead deadOf(const SyncBundle &bundle)
{
    SyncMerge::Dead dead;
    for (const Tombstone &tombstone : bundle.deleted)
        dead.insert(QUuid::fromString(tombstone.id));
    return dead;
}

/// All ids of a bundle that are not those of whole words.
QSet<QUuid> idsWithin(const SyncBundle &bundle)
{
    QSet<QUuid> ids;
    for (const WordEntry &word : bundle.words) {
        for (const Example &example : word.examples)
            ids.insert(example.id);
        for (const AINote &note : word.notes.value_or(QList<AINote>()))
            ids.insert(note.id);
    }
    for (const AINote &note : bundle.notes)
        ids.insert(note.id);
    for (const GrammarEncounter &encounter : bundle.grammar)
        ids.insert(encounter.id);
    for (const AffixEncounter &encounter : bundle.affixes)
        ids.insert(encounter.id);
    return ids;
}

std::string holdsNothingDead(const Bundles &bundles)
{
    const SyncBundle merged = SyncMerge::merge(bundles.a, bundles.b);
    const SyncMerge::Dead dead = deadOf(merged);
    QSet<QUuid> ids = idsWithin(merged);
    for (const WordEntry &word : merged.words)
        ids.insert(word.id);
    for (const QUuid &id : ids) {
        if (dead.contains(id))
            return "a dead id is back: " + idText(id).toStdString();
    }
    if (!dead.contains(deadOf(bundles.a)) || !dead.contains(deadOf(bundles.b)))
        return "a tombstone was lost";
    return {};
}

std::string losesNothing(const Bundles &bundles)
{
    const SyncBundle merged = SyncMerge::merge(bundles.a, bundles.b);
    const SyncMerge::Dead dead = deadOf(merged);
    const QSet<QString> kept = contentOf(merged, dead);
    for (const SyncBundle *side : {&bundles.a, &bundles.b}) {
        for (const QString &piece : contentOf(*side, dead)) {
            if (!kept.contains(piece))
                return "lost: " + piece.toStdString();
        }
    }
    return {};
}

TEST(MergeProperties, MergingAgainChangesNothing)
{
    check(isIdempotentAndAbsorbing);
}

TEST(MergeProperties, TheOrderOfTheSidesDoesNotMatter)
{
    check(isCommutative);
}

TEST(MergeProperties, NothingDeletedComesBack)
{
    check(holdsNothingDead);
}

TEST(MergeProperties, NothingElseIsLost)
{
    check(losesNothing);
}

} // namespace
