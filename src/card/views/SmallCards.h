#pragma once

#include "card/CardState.h"
#include "card/views/CardParts.h"

/// The contents of the card in all states but that of an explained word. `width` is the widest that the card
/// may be, in device-independent pixels.
namespace nimbrelle {

CardPage makeLoadingCard(const CardParts &parts, const CardLoading &loading, int width);
CardPage makeTranslatingCard(const CardParts &parts, const Translating &translating, int width);
CardPage makeOfferCard(const CardParts &parts, const TranslateOffer &offer, int width);
CardPage makeErrorCard(const CardParts &parts, const CardError &error, int width);
CardPage makeTranslationCard(const CardParts &parts, const TranslationData &data, int width);

} // namespace nimbrelle
