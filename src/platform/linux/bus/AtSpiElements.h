#pragma once

#include "platform/AccessibilityReader.h"

#include <QDBusArgument>
#include <QVariant>

namespace nimbrelle::atspi {

inline const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
inline const QString textInterface = QStringLiteral("org.a11y.atspi.Text");

using Answer = std::optional<QVariantList>;
using Elements = QList<AccessibleElement>;

/// D-Bus structs (so) name an element; absent for the one that stands for none.
std::optional<AccessibleElement> elementOf(const QDBusArgument &argument);
std::optional<AccessibleElement> elementOf(const QVariant &value);
/// The elements that an answer lists; none for an absent answer.
Elements elementsOf(const QDBusArgument &argument);
Elements elementsOf(const Answer &answer);

} // namespace nimbrelle::atspi
