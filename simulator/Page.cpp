#include "simulator/Page.h"

#include <algorithm>
#include <optional>

#include "simulator/Ean13.h"
#include "simulator/Fixed.h"
#include "simulator/PageText.h"

namespace tolvane::simulator {

namespace {

std::string FixedOrDash(const std::optional<int>& value, int decimals) {
    return value ? Fixed(*value, decimals) : "–";
}

std::string NumberOrDash(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "–";
}

// One cell of a table; on a narrow page its title stands beside it.
std::string Cell(std::string_view title, const std::string& text, bool number = false) {
    const std::string cell = "<td data-title=\"" + std::string(title) + "\"";
    return cell + (number ? " class=\"number\">" : ">") + Html(text) + "</td>";
}

std::string Fact(std::string_view term, const std::string& text, std::string_view kind = {}) {
    const std::string open = kind.empty() ? "<dd>" : "<dd class=\"" + std::string(kind) + "\">";
    return "<div><dt>" + std::string(term) + "</dt>" + open + Html(text) + "</dd></div>\n";
}

// A title that begins with '#' is that of numbers.
std::string Heading(std::initializer_list<std::string_view> titles) {
    std::string row = "<table class=\"rows\"><thead><tr>";
    for (const std::string_view title : titles) {
        row += title.starts_with('#')
                   ? "<th scope=\"col\" class=\"number\">" + std::string(title.substr(1))
                   : "<th scope=\"col\">" + std::string(title);
        row += "</th>";
    }
    return row + "</tr></thead>\n<tbody>\n";
}

std::string Endpoints(const TPageModel& model) {
    std::string all;
    for (const std::string& endpoint : model.endpoints)
        all += (all.empty() ? "" : ", ") + endpoint;
    return all;
}

std::string Scale(const TPageModel& model) {
    const TScaleProperties& scale = model.state.scale;
    const TRequestCounts& counts = model.state.requests;
    std::string html = "<section id=\"scale\"><h2>The scale</h2>\n<dl>\n";
    html += Fact("Model", std::string(PropertiesOf(scale.model).name));
    html += Fact("Mode", model.state.programming ? "programming" : "weighing", "mode");
    html += Fact("Version", scale.version);
    html += Fact("Highest article", std::to_string(scale.capacity));
    html += Fact("Label mode", std::to_string(scale.labelMode));
    html += Fact("Address", std::to_string(scale.address));
    html += Fact("Code table", std::string(CodeTableName(scale.codeTable)));
    html += Fact("Listens on", Endpoints(model));
    html += Fact("Requests", std::to_string(counts.total));
    html += Fact("Refused", std::to_string(counts.refused));
    html += Fact("Ignored in a silence", std::to_string(counts.ignored));
    html += Fact("Malformed", std::to_string(counts.malformed));
    html += Fact("Wrong checksum", std::to_string(counts.badChecksum));
    html += Fact("Wrong address", std::to_string(counts.wrongAddress));
    return html + "</dl></section>\n";
}

// Which of the articles are shown, and where the pages before and after begin.
struct TPart {
    std::vector<const TArticle*> shown{};
    std::size_t before = 0;
    std::size_t all = 0;
    std::size_t cleared = 0;
    int previous = 0;
    int next = 0;
};

TPart PartOf(const TPageModel& model) {
    TPart part;
    std::vector<int> earlier;
    for (const auto& [number, article] : model.state.articles) {
        if (article.IsCleared()) {
            ++part.cleared;
            continue;
        }
        ++part.all;
        if (number < model.from) {
            earlier.push_back(number);
        } else if (part.shown.size() < std::size_t{TPageModel::kArticles}) {
            part.shown.push_back(&article);
        } else if (part.next == 0) {
            part.next = number;
        }
    }
    part.before = earlier.size();
    if (!earlier.empty())
        part.previous =
            earlier[earlier.size() - std::min(earlier.size(), std::size_t{TPageModel::kArticles})];
    return part;
}

std::string PartLink(const TPageModel& model, int from, std::string_view text) {
    if (from == 0) return {};
    return "<a href=\"/?from=" + std::to_string(from) +
           "&amp;grams=" + std::to_string(model.plate.grams) + "#articles\">" + std::string(text) +
           "</a>";
}

std::string ArticleRow(const TArticle& article, TCodeTable table) {
    const std::string kind = !article.pieces ? "–" : *article.pieces ? "piece" : "weight";
    return "<tr>" + Cell("PLU", std::to_string(article.number), true) +
           Cell("Price", FixedOrDash(article.price, 2), true) +
           Cell("Weight field", FixedOrDash(article.weight, 3), true) + Cell("Kind", kind) +
           Cell("Tare", NumberOrDash(article.tare), true) +
           Cell("Label", NumberOrDash(article.label), true) +
           Cell("Days", NumberOrDash(article.BestBefore()), true) +
           Cell("Barcode", article.Text(kBarcodeParameter, table)) +
           Cell("Name", article.Text(0, table)) + Cell("Name 2", article.Text(1, table)) +
           "</tr>\n";
}

std::string Articles(const TPageModel& model, const TPart& part) {
    std::string html = "<section id=\"articles\"><h2>What it holds</h2>\n<p>" +
                       std::to_string(part.all) + " articles, " + std::to_string(part.cleared) +
                       " cleared.";
    if (part.shown.size() < part.all && !part.shown.empty()) {
        html += " These are " + std::to_string(part.before + 1) + " to " +
                std::to_string(part.before + part.shown.size()) + ".";
    }
    html += "</p>\n<nav>" + PartLink(model, part.previous, "Earlier") +
            PartLink(model, part.next, "Later") + "</nav>\n";
    if (part.shown.empty()) return html + "</section>\n";
    html += "<div class=\"wide\">" + Heading({"#PLU", "#Price", "#Weight field", "Kind", "#Tare",
                                              "#Label", "#Days", "Barcode", "Name", "Name 2"});
    for (const TArticle* article : part.shown)
        html += ArticleRow(*article, model.state.scale.codeTable);
    return html + "</tbody></table></div></section>\n";
}

std::string Sum(std::string_view caption, const std::string& value, bool total = false) {
    return std::string(total ? "<span class=\"total\">" : "<span>") + "<small>" +
           std::string(caption) + "</small>" + Html(value.empty() ? "–" : value) + "</span>";
}

// The words on it are Bulgarian, as on a label in a shop.
std::string LabelHtml(const TLabel& label) {
    std::string html = "<article class=\"label\" lang=\"bg\" id=\"label-" +
                       std::to_string(label.number) + "\"><div>";
    for (const std::string& name : label.names)
        html += "<b>" + Html(name) + "</b>";
    html += "</div>";
    for (const std::string& comment : label.comments)
        html += "<p>" + Html(comment) + "</p>";
    if (!label.bestBefore.empty()) html += "<p>Годност: " + label.bestBefore + " дни</p>";
    if (!label.lot.empty()) html += "<p>Партида: " + Html(label.lot) + "</p>";
    html += "<div class=\"sums\">" +
            Sum(label.pieces ? "Цена за брой" : "Цена за кг", label.price) +
            Sum(label.pieces ? "Брой" : "Тегло, кг", label.amount) +
            Sum("Сума", label.total, true) + "</div>";
    if (!label.barcode.empty()) return html + Ean13Svg(label.barcode) + "</article>\n";
    html += label.text5.empty()
                ? "<p lang=\"en\">No barcode.</p>"
                : "<p lang=\"en\">No barcode: “" + Html(label.text5) + "” is not five digits.</p>";
    return html + "</article>\n";
}

std::string Labels(const TPageModel& model, const TPart& part) {
    std::string html =
        "<section id=\"labels\"><h2>The labels that it would print</h2>\n"
        "<form action=\"/#labels\"><label for=\"grams\">Grams on the scale</label>"
        "<input type=\"hidden\" name=\"from\" value=\"" +
        std::to_string(model.from) +
        "\"><input id=\"grams\" type=\"number\" name=\"grams\" min=\"0\" max=\"" +
        std::to_string(TPlate::kMostGrams) + "\" value=\"" + std::to_string(model.plate.grams) +
        "\"><button id=\"weigh\">Weigh</button></form>\n"
        "<p class=\"soft\">What a real scale prints is set in the scale. Here an article's five "
        "digits become "
        "an EAN-13: " +
        Html(model.plate.barcodePrefix) +
        ", the five digits, grams or pieces in five digits, the check digit.</p>\n"
        "<div class=\"labels\">\n";
    for (const TArticle* article : part.shown)
        html += LabelHtml(MakeLabel(*article, model.state.scale.codeTable, model.plate));
    return html + "</div></section>\n";
}

std::string Seconds(std::chrono::milliseconds time) {
    const std::string rest = std::to_string(time.count() % 1000);
    return std::to_string(time.count() / 1000) + "." + std::string(3 - rest.size(), '0') + rest;
}

std::string Bytes(const TRequestLine& line) {
    return "<td data-title=\"Bytes\"><details><summary>show</summary><code>&lt; " +
           Html(line.bytes) + "<br>&gt; " + Html(line.replyBytes) + "</code></details></td>";
}

std::string Requests(const TPageModel& model) {
    std::string html = "<section id=\"requests\"><h2>The latest requests</h2>\n";
    if (model.requests.empty()) return html + "<p>None has come yet.</p></section>\n";
    html +=
        "<div class=\"wide\">" + Heading({"#No.", "#Seconds", "Command", "What", "Reply", "Bytes"});
    for (const TRequestLine& line : model.requests) {
        html += "<tr>" + Cell("No.", std::to_string(line.number), true) +
                Cell("Seconds", Seconds(line.at), true) + Cell("Command", line.command) +
                Cell("What", line.subject) + Cell("Reply", line.reply) + Bytes(line) + "</tr>\n";
    }
    return html + "</tbody></table></div></section>\n";
}

// The answer leads back to the same articles.
std::string FaultForm(const TPageModel& model) {
    return "<form method=\"post\" action=\"/faults?from=" + std::to_string(model.from) +
           "&amp;grams=" + std::to_string(model.plate.grams) + "\">";
}

std::string Switch(const TPageModel& model, std::size_t index) {
    const TFaultSwitch& fault = model.faults[index];
    const std::string text = Html(fault.text);
    return FaultForm(model) + "<input type=\"hidden\" name=\"fault\" value=\"" + text +
           "\"><input type=\"hidden\" name=\"on\" value=\"" + (fault.on ? "0" : "1") +
           "\"><button id=\"fault-" + std::to_string(index) + "\" aria-pressed=\"" +
           (fault.on ? "true\" class=\"on\">" : "false\">") + text + "</button></form>\n";
}

std::string Faults(const TPageModel& model) {
    std::string html =
        "<section id=\"faults\"><h2>Faults</h2>\n"
        "<p class=\"soft\">A press switches a fault on or off. Each change ends a silence and "
        "numbers the "
        "requests from 1 again.</p>\n<div class=\"switches\">\n";
    for (std::size_t i = 0; i < model.faults.size(); ++i)
        html += Switch(model, i);
    return html + "</div>\n" + FaultForm(model) +
           "<label for=\"fault\">Another fault</label>"
           "<input id=\"fault\" name=\"fault\" required autocomplete=\"off\" "
           "placeholder=\"error,command=SetPrice,from=3,code=7\">"
           "<input type=\"hidden\" name=\"on\" value=\"1\">"
           "<button id=\"add-fault\">Switch on</button></form></section>\n";
}

}  // namespace

std::string Html(std::string_view text) {
    std::string html;
    html.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '&':
                html += "&amp;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                if (static_cast<unsigned char>(c) < ' ' || c == 0x7F)
                    html += "\uFFFD";
                else
                    html += c;
        }
    }
    return html;
}

std::string RenderContent(const TPageModel& model) {
    const TPart part = PartOf(model);
    return Scale(model) + Articles(model, part) + Labels(model, part) + Requests(model) +
           Faults(model);
}

std::string RenderPage(const TPageModel& model, std::string_view nonce) {
    const std::string name(PropertiesOf(model.state.scale.model).name);
    const std::string mark = " nonce=\"" + std::string(nonce) + "\">";
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<title>Virtual scale " +
           name + "</title>\n<link rel=\"icon\" href=\"data:,\">\n<style" + mark +
           std::string(kPageStyle) + "</style></head>\n<body><header><h1>Virtual scale " + name +
           "</h1><p id=\"ended\" role=\"status\" hidden>The scale does not answer any more.</p>"
           "</header>\n<main id=\"content\">\n" +
           RenderContent(model) + "</main>\n<script" + mark + std::string(kPageScript) +
           "</script></body></html>\n";
}

}  // namespace tolvane::simulator
