#include "platform/linux/bus/FlowingText.h"

#include <algorithm>
#include <utility>

namespace nimbrelle {

void FlowingText::add(const QString &more, Flow flow)
{
    if (more.isEmpty())
        return;
    const Flow border = std::max(std::exchange(m_last, flow), flow);
    if (border == Flow::line && m_text.endsWith(u'-'))
        m_text.chop(1); // a word that was cut in two
    else if (border != Flow::inText && !m_text.isEmpty() && !m_text.back().isSpace() && !more[0].isSpace())
        m_text += border == Flow::line ? u' ' : u'\n';
    m_text += more;
}

} // namespace nimbrelle
