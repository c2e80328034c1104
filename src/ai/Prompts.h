#pragma once

#include <QString>

/// The system texts of the four contracts with the AI. Each is built once, at its first use.
namespace nimbrelle::prompts {

const QString &explain();
const QString &lookup();
const QString &translate();
const QString &mnemonic();

} // namespace nimbrelle::prompts
