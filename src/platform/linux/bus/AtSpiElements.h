#pragma once

#include "platform/AccessibilityReader.h"

#include <QDBusArgument>
#include <QVariant>

namespace nimbrelle::atspi {

inline const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
inline const QString textInterface = QStringLiteral("org.a11y.atspi.Text");

inline const QString registryService = QStringLiteral("org.a11y.atspi.Registry");
/// Where each program, and the registry of all, has its outermost element.
inline const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");

inline constexpr quint32 activeState = 1;
inline constexpr quint32 focusedState = 12;
inline constexpr quint32 showingState = 25;

using Answer = std::optional<QVariantList>;
using Elements = QList<AccessibleElement>;

/// D-Bus structs (so) name an element; absent for the one that stands for none.
std::optional<AccessibleElement> elementOf(const QDBusArgument &argument);
std::optional<AccessibleElement> elementOf(const QVariant &value);
/// The elements that an answer lists; none for an absent answer.
Elements elementsOf(const QDBusArgument &argument);
Elements elementsOf(const Answer &answer);

/// Whether an answer of states holds this one; false for an absent answer.
bool hasState(const Answer &states, quint32 state);

} // namespace nimbrelle::atspi
