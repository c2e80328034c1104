#include "platform/linux/bus/AtSpiElements.h"

#include <QDBusObjectPath>

using namespace Qt::StringLiterals;

namespace nimbrelle::atspi {

std::optional<AccessibleElement> elementOf(const QDBusArgument &argument)
{
    if (argument.currentType() != QDBusArgument::StructureType)
        return std::nullopt;
    QString program;
    QDBusObjectPath object;
    argument.beginStructure();
    argument >> program >> object;
    argument.endStructure();
    if (program.isEmpty() || object.path() == u"/org/a11y/atspi/null")
        return std::nullopt;
    return AccessibleElement{.program = program, .object = object.path()};
}

std::optional<AccessibleElement> elementOf(const QVariant &value)
{
    if (!value.canConvert<QDBusArgument>())
        return std::nullopt;
    return elementOf(value.value<QDBusArgument>());
}

Elements elementsOf(const QDBusArgument &argument)
{
    Elements elements;
    if (argument.currentType() != QDBusArgument::ArrayType)
        return elements;
    argument.beginArray();
    while (!argument.atEnd())
        if (const auto element = elementOf(argument))
            elements.append(*element);
    argument.endArray();
    return elements;
}

Elements elementsOf(const Answer &answer)
{
    if (!answer || !answer->value(0).canConvert<QDBusArgument>())
        return {};
    return elementsOf(answer->value(0).value<QDBusArgument>());
}

bool hasState(const Answer &states, quint32 state)
{
    if (!states)
        return false;
    const auto words = qdbus_cast<QList<quint32>>(states->value(0));
    return words.value(state / 32) & (1U << (state % 32));
}

} // namespace nimbrelle::atspi
