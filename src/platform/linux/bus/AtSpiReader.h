#pragma once

#include "platform/linux/bus/AtSpiBus.h"
#include "platform/linux/bus/AtSpiText.h"

namespace nimbrelle {

class FrontApplication;

/// What programs tell on the accessibility bus. No call there tells the focused element, so this listens from
/// its start and keeps, for each program, where the focus or a selection was last. Questions that do not
/// depend on each other are asked side by side, for some toolkits take 20 ms to each answer.
class AtSpiReader final : public QObject, public AccessibilityReader {
    Q_OBJECT

public:
    /// Both outlive this.
    AtSpiReader(AtSpiBus &bus, const FrontApplication &front);

    using Bus = AtSpiBus::State;
    Bus bus() const { return m_bus.state(); }
    void connectToBus() { m_bus.open(); }

    void beginGesture() override { m_questions.beginGesture(); }
    quint64 changeCount() const override { return m_order; }
    QCoro::Task<std::optional<AccessibleElement>> focusedElement() override;
    QCoro::Task<std::optional<MarkedText>> markedText(AccessibleElement element, qsizetype reach) override;
    QCoro::Task<std::optional<bool>> isWebArea(AccessibleElement element) override;
    QCoro::Task<std::optional<AccessibleElement>> parent(AccessibleElement element) override;
    QCoro::Task<std::optional<QString>> address(AccessibleElement element) override;

private slots:
    void handleStateChanged(const QDBusMessage &event);
    void handleSelectionChanged(const QDBusMessage &event);

private:
    struct Place {
        QString object;
        quint64 order = 0; ///< the greater, the later
        QString selectionObject;
        quint64 selectionOrder = 0; ///< that of the program's newest selection; 0: it told of none
    };
    enum class Change { focus, selection };

    void listen();
    void remember(const AccessibleElement &element, Change change);
    std::optional<AccessibleElement> newestPlace() const;
    QCoro::Task<std::optional<AccessibleElement>> newestPlaceOf(qint64 process);
    QCoro::Task<std::optional<AccessibleElement>> searchFocus(qint64 process);
    QCoro::Task<std::optional<QString>> programOf(qint64 process, QStringList among);
    QCoro::Task<std::optional<AccessibleElement>> focusIn(AccessibleElement window);
    QCoro::Task<std::optional<AccessibleElement>> descendToFocus(AccessibleElement window);

    AtSpiBus &m_bus;
    const FrontApplication &m_front;
    QHash<QString, Place> m_places; ///< by program
    quint64 m_order = 0;
    AtSpiQuestions m_questions{m_bus};
    AtSpiText m_text{m_questions};
};

} // namespace nimbrelle
