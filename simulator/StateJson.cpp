#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "simulator/Hex.h"
#include "simulator/ScaleState.h"

namespace tolvane::simulator {

namespace {

using nlohmann::json;

[[noreturn]] void RejectState(const std::string& what) {
    throw std::runtime_error("not a scale's state: " + what);
}

template <typename T>
json Nullable(const std::optional<T>& value) {
    return value ? json(*value) : json(nullptr);
}

template <typename T>
std::optional<T> Optional(const json& from, const char* key) {
    const auto found = from.find(key);
    if (found == from.end() || found->is_null()) return std::nullopt;
    return found->get<T>();
}

int CommandCode(const std::string& text) {
    const std::optional<std::uint8_t> code = CommandByText(text);
    if (!code) RejectState("command \"" + text + "\"");
    return *code;
}

json ScaleJson(const TScaleProperties& scale) {
    return {{"model", PropertiesOf(scale.model).name},
            {"version", scale.version},
            {"capacity", scale.capacity},
            {"labelMode", scale.labelMode},
            {"address", scale.address},
            {"codeTable", CodeTableName(scale.codeTable)}};
}

TScaleProperties ScaleFromJson(const json& from) {
    TScaleProperties scale;
    const auto model = ModelByName(from.at("model").get<std::string>());
    const auto table = CodeTableByName(from.at("codeTable").get<std::string>());
    if (!model) RejectState("unknown model");
    if (!table) RejectState("unknown code table");
    scale.model = *model;
    scale.codeTable = *table;
    scale.version = from.at("version").get<std::string>();
    scale.capacity = from.at("capacity").get<int>();
    scale.labelMode = from.at("labelMode").get<int>();
    scale.address = from.at("address").get<int>();
    return scale;
}

json RequestsJson(const TRequestCounts& counts) {
    json byCommand = json::object();
    for (const auto& [code, count] : counts.byCommand)
        byCommand[CommandText(static_cast<std::uint8_t>(code))] = count;
    return {{"total", counts.total},
            {"refused", counts.refused},
            {"ignored", counts.ignored},
            {"malformed", counts.malformed},
            {"badChecksum", counts.badChecksum},
            {"wrongAddress", counts.wrongAddress},
            {"byCommand", byCommand}};
}

TRequestCounts RequestsFromJson(const json& from) {
    TRequestCounts counts;
    counts.total = from.at("total").get<int>();
    counts.refused = from.at("refused").get<int>();
    counts.ignored = from.at("ignored").get<int>();
    counts.malformed = from.at("malformed").get<int>();
    counts.badChecksum = from.at("badChecksum").get<int>();
    counts.wrongAddress = from.at("wrongAddress").get<int>();
    for (const auto& [name, count] : from.at("byCommand").items())
        counts.byCommand[CommandCode(name)] = count.get<int>();
    return counts;
}

json ArticleJson(const TArticle& article, TCodeTable table) {
    json texts = json::array();
    for (const auto& [parameter, text] : article.texts) {
        texts.push_back({{"parameter", parameter},
                         {"hex", ToHex(text.bytes)},
                         {"text", DecodeText(text.bytes, table)},
                         {"writes", text.writes}});
    }
    return {{"number", article.number},
            {"price", Nullable(article.price)},
            {"weight", Nullable(article.weight)},
            {"pieces", Nullable(article.pieces)},
            {"tare", Nullable(article.tare)},
            {"label", Nullable(article.label)},
            {"bestBefore", Nullable(article.BestBefore())},
            {"cleared", article.IsCleared()},
            {"priceWrites", article.priceWrites},
            {"texts", std::move(texts)}};
}

TArticle ArticleFromJson(const json& from) {
    TArticle article;
    article.number = from.at("number").get<int>();
    article.price = Optional<int>(from, "price");
    article.weight = Optional<int>(from, "weight");
    article.pieces = Optional<bool>(from, "pieces");
    article.tare = Optional<int>(from, "tare");
    article.label = Optional<int>(from, "label");
    article.priceWrites = from.at("priceWrites").get<int>();
    for (const json& text : from.at("texts")) {
        const auto bytes = FromHex(text.at("hex").get<std::string>());
        if (!bytes) RejectState("bad bytes of article " + std::to_string(article.number));
        article.texts[text.at("parameter").get<int>()] = {*bytes, text.at("writes").get<int>()};
    }
    return article;
}

}  // namespace

json ToJson(const TScaleState& state) {
    json articles = json::array();
    for (const auto& entry : state.articles)
        articles.push_back(ArticleJson(entry.second, state.scale.codeTable));
    return {{"scale", ScaleJson(state.scale)},
            {"mode", state.programming ? "programming" : "weighing"},
            {"requests", RequestsJson(state.requests)},
            {"articles", std::move(articles)}};
}

TScaleState FromJson(const json& from) {
    try {
        TScaleState state;
        state.scale = ScaleFromJson(from.at("scale"));
        const auto mode = from.at("mode").get<std::string>();
        if (mode != "programming" && mode != "weighing") RejectState("unknown mode");
        state.programming = mode == "programming";
        state.requests = RequestsFromJson(from.at("requests"));
        for (const json& entry : from.at("articles")) {
            TArticle article = ArticleFromJson(entry);
            state.articles[article.number] = std::move(article);
        }
        return state;
    } catch (const json::exception& error) {
        RejectState(error.what());
    }
}

void SaveState(const TScaleState& state, const std::string& path) {
    const std::string temporary = path + ".new";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        // A version text may hold bytes that are not UTF-8.
        file << ToJson(state).dump(2, ' ', false, json::error_handler_t::replace) << '\n';
        file.close();
        if (!file) throw std::runtime_error("cannot write " + temporary);
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    if (error) throw std::runtime_error("cannot replace " + path + ": " + error.message());
}

TScaleState LoadState(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    try {
        return FromJson(json::parse(file));
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

}  // namespace tolvane::simulator
