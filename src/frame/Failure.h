#pragma once

#include <QString>

#include <exception>

namespace nimbrelle {

/// A failure that crosses an await and ends as one Chinese sentence before the user.
class Failure : public std::exception {
public:
    explicit Failure(QString text) : m_text(std::move(text)), m_bytes(m_text.toUtf8()) { }

    /// The sentence, as it is shown.
    const QString &text() const { return m_text; }
    const char *what() const noexcept override { return m_bytes.constData(); }

    /// What to show of whatever ended a flow: a failure's sentence, or what another exception says of itself.
    static QString shownText(const std::exception &error);

private:
    QString m_text;
    QByteArray m_bytes;
};

/// The flow was stopped by its owner; whoever catches it treats it as no failure and shows nothing.
class Cancelled : public Failure {
public:
    Cancelled();
};

} // namespace nimbrelle
