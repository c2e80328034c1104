#include "notebook/Catalogue.h"

#include "frame/RecordCodec.h"

#include <QStringList>

namespace nimbrelle {

namespace {

struct GrammarText {
    QString label;
    QString explanation;
};

struct AffixText {
    QString meaning;
    QString examples;
    QString variants;
};

const std::array<QString, caseCount<Register>> registerLabels{QStringLiteral("正式"), QStringLiteral("中性"),
    QStringLiteral("口语"), QStringLiteral("俚语"), QStringLiteral("技术")};

const std::array<QString, caseCount<FormKind>> formLabels{
    QStringLiteral("原形"),
    QStringLiteral("第三人称单数"),
    QStringLiteral("-ing 形式"),
    QStringLiteral("过去式"),
    QStringLiteral("过去分词"),
    QStringLiteral("复数"),
    QStringLiteral("比较级"),
    QStringLiteral("最高级"),
};

const std::array<GrammarText, caseCount<GrammarPoint>> grammarTexts{{
    {QStringLiteral("一般现在时"),
        QStringLiteral(
            "说习惯、事实、经常发生的事。主语是 he/she/it 时动词加 -s。\n例：She works from home.")},
    {QStringLiteral("现在进行时"),
        QStringLiteral("说现在正在做的事。am/is/are + 动词-ing。\n例：I'm reading a Reddit thread.")},
    {QStringLiteral("一般过去时"),
        QStringLiteral(
            "说过去已经发生、已经结束的事。规则动词加 -ed，不规则动词要单独记。\n例：He went home early.")},
    {QStringLiteral("过去进行时"),
        QStringLiteral(
            "说过去某个时刻正在做的事。was/were + 动词-ing。\n例：I was sleeping when you called.")},
    {QStringLiteral("现在完成时"),
        QStringLiteral("过去发生、但跟现在有关系的事（经历、刚完成、一直持续）。have/has + "
                       "过去分词。\n例：I've never seen this before.")},
    {QStringLiteral("过去完成时"),
        QStringLiteral("比过去某个时间更早发生的事，\"过去的过去\"。had + 过去分词。\n例：The game had "
                       "started when I arrived.")},
    {QStringLiteral("将来时"),
        QStringLiteral(
            "说将来要发生的事。will + 动词原形，或 be going to + 动词原形。\n例：It's going to rain.")},
    {QStringLiteral("被动语态"),
        QStringLiteral("强调\"被怎么样\"，不在乎是谁做的。be + 过去分词。\n例：This post was deleted.")},
    {QStringLiteral("动名词"),
        QStringLiteral("动词加 -ing 当名词用，表示\"做这件事\"。\n例：Learning English is hard.")},
    {QStringLiteral("不定式"),
        QStringLiteral("to + 动词原形，常表示目的或要做的事。\n例：I came here to ask a question.")},
    {QStringLiteral("情态动词"),
        QStringLiteral("can / could / should / would / must / might "
                       "等，表示能力、建议、可能、必须，后面跟动词原形。\n例：You should try it.")},
    {QStringLiteral("祈使句"),
        QStringLiteral("直接让别人做某事，句子以动词原形开头，没有主语。\n例：Check the docs first.")},
    {QStringLiteral("条件句"),
        QStringLiteral("\"如果……就……\"。常见 if + 现在时, will…；或者 if + 过去式, would…（假设）。\n例：If "
                       "I were you, I would quit.")},
    {QStringLiteral("比较级"),
        QStringLiteral("两者比较，\"更……\"。短词加 -er，长词前面加 more。\n例：This version is faster.")},
    {QStringLiteral("最高级"),
        QStringLiteral(
            "三者以上比较，\"最……\"。短词加 -est，长词前面加 most。\n例：It's the best answer here.")},
    {QStringLiteral("名词复数"),
        QStringLiteral(
            "名词表示多个。一般加 -s/-es，也有不规则的（child → children）。\n例：Two new features.")},
}};

const std::array<AffixText, caseCount<Affix>> affixTexts{{
    {QStringLiteral("不、相反"), QStringLiteral("unhappy, unlock, unknown"), {}},
    {QStringLiteral("不、没有"), QStringLiteral("incorrect, impossible, invisible"),
        QStringLiteral("也写作 im-（impossible）、il-（illegal）、ir-（irregular）")},
    {QStringLiteral("不、相反、去掉"), QStringLiteral("disagree, disable, dislike"), {}},
    {QStringLiteral("再、重新"), QStringLiteral("restart, rewrite, reload"), {}},
    {QStringLiteral("在……之前、预先"), QStringLiteral("preview, prepaid, preset"), {}},
    {QStringLiteral("错误地"), QStringLiteral("mistake, misread, misunderstand"), {}},
    {QStringLiteral("过度、在上面"), QStringLiteral("overload, overthink, overflow"), {}},
    {QStringLiteral("不足、在下面"), QStringLiteral("underrated, underestimate, underline"), {}},
    {QStringLiteral("非、不"), QStringLiteral("nonsense, non-profit, nonstop"), {}},
    {QStringLiteral("反对、抗"), QStringLiteral("antivirus, antisocial"), {}},
    {QStringLiteral("共同、一起"), QStringLiteral("coworker, co-op, coexist"), {}},
    {QStringLiteral("在……之间、相互"), QStringLiteral("internet, interact, interface"), {}},
    {QStringLiteral("把动词变成名词（动作或结果）"), QStringLiteral("decision, action, information"),
        QStringLiteral("也写作 -sion（decision）、-ation（information）")},
    {QStringLiteral("把动词变成名词（行为或结果）"), QStringLiteral("development, agreement, payment"), {}},
    {QStringLiteral("把形容词变成名词（性质、状态）"), QStringLiteral("happiness, darkness, awareness"), {}},
    {QStringLiteral("把形容词变成名词（性质）"), QStringLiteral("ability, security, popularity"),
        QStringLiteral("也写作 -ty（safety）")},
    {QStringLiteral("做某事的人或东西"), QStringLiteral("player, developer, editor"),
        QStringLiteral("也写作 -or（editor）")},
    {QStringLiteral("从事某事的人、某种主义的人"), QStringLiteral("artist, scientist, tourist"), {}},
    {QStringLiteral("能被……的、可以……的"), QStringLiteral("readable, usable, available"),
        QStringLiteral("也写作 -ible（visible）")},
    {QStringLiteral("充满……的"), QStringLiteral("useful, helpful, careful"), {}},
    {QStringLiteral("没有……的"), QStringLiteral("useless, homeless, endless"), {}},
    {QStringLiteral("有……性质的（形容词）"), QStringLiteral("famous, dangerous, various"),
        QStringLiteral("也写作 -ious（curious）")},
    {QStringLiteral("有……倾向的（形容词）"), QStringLiteral("active, creative, expensive"), {}},
    {QStringLiteral("与……有关的（形容词）"), QStringLiteral("personal, global, optional"),
        QStringLiteral("也写作 -ial（official）")},
    {QStringLiteral("与……有关的、……式的（形容词）"), QStringLiteral("basic, economic, toxic"), {}},
    {QStringLiteral("把形容词变成副词（……地）"), QStringLiteral("quickly, really, usually"),
        QStringLiteral("形容词结尾的 -ly（friendly）是另一种用法")},
    {QStringLiteral("使……化、变成（动词）"), QStringLiteral("organize, realize, optimize"),
        QStringLiteral("英式写作 -ise")},
    {QStringLiteral("使……、变成（动词）"), QStringLiteral("simplify, verify, notify"), {}},
    {QStringLiteral("使变得……（动词）"), QStringLiteral("shorten, strengthen, widen"), {}},
    {QStringLiteral("身份、关系、状态（名词）"), QStringLiteral("friendship, relationship, ownership"), {}},
}};

template <class Enum, class Table> const auto &textOf(const Table &table, Enum value)
{
    return table[static_cast<std::size_t>(value)];
}

template <class Enum> std::optional<Enum> looseCase(const std::optional<QString> &text)
{
    const QString wanted = text.value_or(QString()).remove(u'_').toLower();
    for (const Enum value : allCases<Enum>()) {
        if (caseText(value).toLower() == wanted)
            return value;
    }
    return std::nullopt;
}

QString listedAffixes()
{
    QStringList quoted;
    for (const Affix affix : allCases<Affix>())
        quoted.append(u'"' + displayForm(affix) + u'"');
    return quoted.join(QStringLiteral(", "));
}

} // namespace

QString label(Register tone)
{
    return textOf(registerLabels, tone);
}

Register registerFrom(const std::optional<QString> &text)
{
    return caseFrom<Register>(text.value_or(QString()).toLower()).value_or(Register::neutral);
}

QString label(FormKind kind)
{
    return textOf(formLabels, kind);
}

QString label(GrammarPoint point)
{
    return textOf(grammarTexts, point).label;
}

QString explanation(GrammarPoint point)
{
    return textOf(grammarTexts, point).explanation;
}

QString displayForm(Affix affix)
{
    return isSuffix(affix) ? u'-' + caseText(affix) : caseText(affix) + u'-';
}

QString meaning(Affix affix)
{
    return textOf(affixTexts, affix).meaning;
}

QString examples(Affix affix)
{
    return textOf(affixTexts, affix).examples;
}

QString variants(Affix affix)
{
    return textOf(affixTexts, affix).variants;
}

const QString &affixApiList()
{
    static const QString list = listedAffixes();
    return list;
}

std::optional<FormKind> looseFormKind(const std::optional<QString> &text)
{
    return looseCase<FormKind>(text);
}

std::optional<GrammarPoint> looseGrammarPoint(const std::optional<QString> &text)
{
    return looseCase<GrammarPoint>(text);
}

} // namespace nimbrelle
