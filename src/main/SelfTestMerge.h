#pragma once

class QTextStream;

namespace nimbrelle::SelfTest {

/// The merge rules on a computer and a phone that both changed the notebook, one line for each rule, and
/// which words a full learning set hands back. Touches no file. True when every rule held.
bool runMerge(QTextStream &out);

} // namespace nimbrelle::SelfTest
