#pragma once

#include "notebook/PageSource.h"

#include <QCoro/QCoroTask>

#include <optional>
#include <stop_token>

namespace nimbrelle {

class AccessibilityReader;
class FrontApplication;
struct AccessibleElement;

/// Where the user is reading: the program in front, its window's title and the page's address. Its failures
/// are silent: what cannot be read is absent. Main thread only.
class SourceInfo {
public:
    SourceInfo(const FrontApplication &front, AccessibilityReader &accessibility)
        : m_front(front), m_accessibility(accessibility)
    {
    }

    /// Empty for this program's own windows. Program and title are those of this very moment; the page's
    /// address takes as long as the accessibility reader's questions do. Once `stop` is requested, this may
    /// die.
    QCoro::Task<PageSource> current(std::stop_token stop) const;

    /// The address of the page that `element` is part of.
    QCoro::Task<std::optional<QString>> webAreaURL(AccessibleElement element, std::stop_token stop) const;

private:
    QCoro::Task<std::optional<QString>> focusedPage(std::stop_token stop) const;

    const FrontApplication &m_front;
    AccessibilityReader &m_accessibility;
};

} // namespace nimbrelle
