#pragma once

#include "notebook/PageSource.h"

#include <optional>

namespace nimbrelle {

class AccessibilityReader;
class FrontApplication;
struct AccessibleElement;

/// Where the user is reading: the program in front, its window's title and the page's address. Its failures
/// are silent: what cannot be read is absent.
class SourceInfo {
public:
    SourceInfo(const FrontApplication &front, AccessibilityReader &accessibility)
        : m_front(front), m_accessibility(accessibility)
    {
    }

    /// Empty for this program's own windows. May block as long as the accessibility reader's questions do.
    PageSource current() const;

    /// The address of the page that `element` is part of.
    std::optional<QString> webAreaURL(AccessibleElement element) const;

private:
    const FrontApplication &m_front;
    AccessibilityReader &m_accessibility;
};

} // namespace nimbrelle
