#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "articles/ArticleReading.h"
#include "comm/UdpSocket.h"
#include "command/Ledger.h"
#include "command/ScaleArticles.h"
#include "config/TypesUnit.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

enum class TSeverity : std::uint8_t {
    Error,    // something does not reach a scale, or reaches it wrong
    Warning,  // it does, but not as it is in the database
};

// Something that would go wrong. Texts are code page 1251.
struct TProblem {
    TSeverity severity = TSeverity::Error;
    std::int32_t scale = 0;   // 0: of all
    std::int32_t number = 0;  // of the article, not cut; 0: of the scale itself
    std::string name{};       // of the article or the scale
    std::string problem{};
    std::string cure{};
};

// Of the list of scales: addresses, ports and numbers that are there twice, models and connections
// that do not exist, networks that this computer does not reach. Sends nothing. `hasRoute` answers
// for an IPv4 address.
std::vector<TProblem> ProblemsOfScales(
    const std::vector<TScaleRec>& scales,
    const std::function<bool(std::uint32_t)>& hasRoute = &HasRoute);

// Of articles that concern no single scale: no scale, best-before, currencies. `price`: the chosen
// one, as in TLineChoices.
std::vector<TProblem> ProblemsOfArticles(const TArticleReading& reading, int price);

// Of the articles of one scale: what is left out, what overwrites what, what is cut, and letters
// that the scale's code table lacks. `version` is what the scale reported last.
std::vector<TProblem> ProblemsInScale(const TScaleArticles& articles, const TArticleTable& table,
                                      const TScaleRec& rec, const TScaleVersion& version);

}  // namespace tolvane
