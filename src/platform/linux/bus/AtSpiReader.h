#pragma once

#include "platform/AccessibilityReader.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QVariant>

namespace nimbrelle {

class FrontApplication;

/// The accessibility bus. No call there tells the focused element, so this listens from its start and keeps,
/// for each program, where the focus or a selection was last.
class AtSpiReader final : public QObject, public AccessibilityReader {
    Q_OBJECT

public:
    explicit AtSpiReader(const FrontApplication &front);
    ~AtSpiReader() override;

    enum class Bus {
        connecting,
        connected,
        closed, ///< it could not be opened, or it has gone
        notInstalled,
    };
    Bus bus() const;

    /// Turns accessibility on for the session and connects to its bus, without waiting for either.
    void connectToBus();

    void beginGesture() override { m_slow.clear(); }
    std::optional<AccessibleElement> focusedElement() override;
    std::optional<QString> selectedText(const AccessibleElement &element) override;
    std::optional<TextPiece> textRoundSelection(const AccessibleElement &element, qsizetype reach) override;
    std::optional<bool> isWebArea(const AccessibleElement &element) override;
    std::optional<AccessibleElement> parent(const AccessibleElement &element) override;
    std::optional<QString> address(const AccessibleElement &element) override;

private slots:
    void handleStateChanged(const QDBusMessage &event);
    void handleSelectionChanged(const QDBusMessage &event);
    void forget(const QString &program);

private:
    struct Range {
        int start;
        int end; ///< both as the program counts
    };
    struct Place {
        QString object;
        quint64 order; ///< the greater, the later
    };

    void useBus(const QString &busAddress);
    void registerEvent(const QString &event);
    void remember(const QDBusMessage &event);
    qint64 processOf(const QString &program);
    std::optional<AccessibleElement> searchFocus(qint64 process);
    AccessibleElement descendToFocus(const AccessibleElement &window);
    std::optional<AccessibleElement> activeWindow(const QString &program);
    std::optional<Range> selectedRange(const AccessibleElement &element);
    std::optional<QString> textBetween(const AccessibleElement &element, int start, int end);
    std::optional<QVariantList> ask(const AccessibleElement &element, const QString &interface,
        const QString &method, const QVariantList &arguments = {});
    std::optional<QVariant> propertyOf(
        const AccessibleElement &element, const QString &interface, const QString &name);

    const FrontApplication &m_front;
    QDBusConnection m_bus;
    Bus m_attempt = Bus::connecting; ///< what became of the last one
    QHash<QString, Place> m_places; ///< by program
    QHash<QString, qint64> m_processes; ///< by program
    QSet<QString> m_slow; ///< programs that let a question of this gesture time out
    quint64 m_order = 0;
};

} // namespace nimbrelle
