#pragma once

#include "support/Hand.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QList>
#include <QStyleHints>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace nimbrelle {

inline constexpr double ruleWaitMs = 80; ///< a selection gets this long to settle before it is read
inline constexpr QPoint insideCard{-16, 18 + 12}; ///< from the pointer, in pixels
inline constexpr QPoint insideOffer{-9, 18 + 4};

inline double share(QList<double> values, double part)
{
    std::ranges::sort(values);
    return values[std::min(
        values.size() - 1, static_cast<qsizetype>(part * static_cast<double>(values.size())))];
}

inline void print(const char *road, const QList<double> &times, double waited)
{
    if (times.isEmpty())
        return;
    std::printf("%-34s %4d gestures   median %6.1f   p95 %6.1f   max %6.1f ms beyond the wait\n", road,
        static_cast<int>(times.size()), share(times, 0.5) - waited, share(times, 0.95) - waited,
        share(times, 1) - waited);
    std::fflush(stdout);
}

/// Times gestures that end with a release of the button, until the card has its colour on the screen.
struct RoadTimes {
    Hand &hand;
    std::function<quint32(QPoint pixel)> colourAt;
    std::function<void()> dismiss;
    int gestures = 100;

    bool waitFor(QPoint pixel, bool painted) const
    {
        constexpr quint32 cardColour = 0xFDFBF6;
        constexpr int patienceMs = 5000;
        constexpr std::chrono::microseconds pollingInterval{500};
        QElapsedTimer waited;
        waited.start();
        while (((colourAt(pixel) & 0xFFFFFFU) == cardColour) != painted) {
            if (waited.elapsed() > patienceMs)
                return false;
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(pollingInterval); // the program needs the processor too
        }
        return true;
    }

    /// `prepare` holds the button down. Absent when no card came.
    std::optional<double> timed(const std::function<void()> &prepare, QPoint pixel) const
    {
        prepare();
        QElapsedTimer time;
        hand.button(1, false);
        time.start();
        const bool came = waitFor(pixel, true);
        const double ms = static_cast<double>(time.nsecsElapsed()) / 1e6;
        dismiss();
        EXPECT_TRUE(waitFor(pixel, false));
        QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
        EXPECT_TRUE(came);
        return came ? std::optional(ms) : std::nullopt;
    }

    QList<double> measured(const std::function<void()> &prepare, QPoint pixel) const
    {
        QList<double> times;
        for (int i = -2; i < gestures; ++i) { // the first two warm everything up
            const auto time = timed(prepare, pixel);
            if (time && i >= 0)
                times.append(*time);
        }
        return times;
    }
};

} // namespace nimbrelle
