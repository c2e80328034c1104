#include "main/Services.h"

namespace nimbrelle {

Services &Services::shared()
{
    static Services services;
    return services;
}

QNetworkAccessManager &Services::network()
{
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    return *m_network;
}

WordStore &Services::words()
{
    if (!m_words)
        m_words = std::make_unique<WordStore>(paths(), clock(), config(), log());
    return *m_words;
}

} // namespace nimbrelle
