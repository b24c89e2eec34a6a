#include "simulator/Page.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace tolvane::simulator {
namespace {

bool Has(const std::string& html, std::string_view part) {
    return html.find(part) != html.npos;
}

TBytes Text(std::string_view text) {
    return {text.begin(), text.end()};
}

// A scale with the articles 1 to count.
TPageModel Holding(int count) {
    TPageModel model;
    model.state.scale = DefaultProperties(TModel::Ets);
    for (int number = 1; number <= count; ++number) {
        TArticle& article = model.state.articles[number];
        article.number = number;
        article.price = 100 + number;
        article.texts[0].bytes = Text("Article");
        article.texts[5].bytes = Text("22012");
    }
    return model;
}

TEST(PageTest, Html_LeavesNoMark) {
    EXPECT_EQ(Html("<script>alert('1')</script>"),
              "&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;");
    EXPECT_EQ(Html("\" onload=\"x&amp;"), "&quot; onload=&quot;x&amp;amp;");
    EXPECT_EQ(Html("a\x01z\x7F"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    EXPECT_EQ(Html("Сирене"), "Сирене");
}

TEST(PageTest, TheScale_IsShown) {
    TPageModel model = Holding(0);
    model.endpoints = {"tcp 127.0.0.1:1001", "udp 127.0.0.1:1001"};
    model.state.requests.total = 19;
    const std::string html = RenderContent(model);
    EXPECT_TRUE(Has(html, "<dt>Model</dt><dd>ETS</dd>"));
    EXPECT_TRUE(Has(html, "<dt>Mode</dt><dd class=\"mode\">weighing</dd>"));
    EXPECT_TRUE(Has(html, "<dt>Highest article</dt><dd>9999</dd>"));
    EXPECT_TRUE(Has(html, "<dt>Listens on</dt><dd>tcp 127.0.0.1:1001, udp 127.0.0.1:1001</dd>"));
    EXPECT_TRUE(Has(html, "<dt>Requests</dt><dd>19</dd>"));
    EXPECT_TRUE(Has(html, "0 articles, 0 cleared."));
    EXPECT_TRUE(Has(html, "None has come yet."));
    model.state.programming = true;
    EXPECT_TRUE(Has(RenderContent(model), "<dd class=\"mode\">programming</dd>"));
}

TEST(PageTest, AnArticle_IsARowAndALabelWithItsBarcode) {
    TPageModel model = Holding(1);
    TArticle& article = model.state.articles[1];
    article.price = 1234;
    article.weight = 0;
    article.texts[0].bytes = Bytes("91 A8 E0 A5 AD A5");
    article.texts[4].bytes = Bytes("01 1E");
    const std::string html = RenderContent(model);
    EXPECT_TRUE(Has(html,
                    "<td data-title=\"PLU\" class=\"number\">1</td>"
                    "<td data-title=\"Price\" class=\"number\">12.34</td>"
                    "<td data-title=\"Weight field\" class=\"number\">0.000</td>"));
    EXPECT_TRUE(Has(html, "<td data-title=\"Name\">Сирене</td>"));
    EXPECT_TRUE(Has(html, "<b>Сирене</b>"));
    EXPECT_TRUE(Has(html, "Годност: 30 дни"));
    EXPECT_TRUE(Has(html, "<small>Сума</small>6.17"));
    EXPECT_TRUE(Has(html, "aria-label=\"Barcode 2022012005000\""));
}

TEST(PageTest, AHostileText_StaysText) {
    TPageModel model = Holding(1);
    TArticle& article = model.state.articles[1];
    article.texts[0].bytes = Text("<script>alert(1)</script>");
    article.texts[1].bytes = Text("\"><img src=x onerror=alert(2)>");
    article.texts[2].bytes = Text("</article><style>*{}");
    article.texts[5].bytes = Text("<b>&'\"");
    article.texts[7].bytes = Text("<i>");
    model.requests.push_back({.subject = "article 1, text 0: <script>alert(3)</script>"});
    model.endpoints = {"<u>"};
    model.state.scale.version = "<s>&";
    const std::string html = RenderContent(model);
    for (const std::string_view tag : {"<script", "<img", "</article><style", "<i>", "<u>", "<s>"})
        EXPECT_FALSE(Has(html, tag)) << tag;
    EXPECT_TRUE(Has(html, "<b>&lt;script&gt;alert(1)&lt;/script&gt;</b>"));
    EXPECT_TRUE(Has(html, "No barcode: “&lt;b&gt;&amp;&#39;&quot;” is not five digits."));
}

TEST(PageTest, AClearedArticle_IsOnlyCounted) {
    TPageModel model = Holding(3);
    model.state.articles[2].price = 0;
    model.state.articles[2].texts[0].bytes = Bytes("00 20");
    const std::string html = RenderContent(model);
    EXPECT_TRUE(Has(html, "2 articles, 1 cleared."));
    EXPECT_FALSE(Has(html, "id=\"label-2\""));
    EXPECT_TRUE(Has(html, "id=\"label-3\""));
}

TEST(PageTest, ManyArticles_AreShownInParts) {
    TPageModel model = Holding(100);
    std::string html = RenderContent(model);
    EXPECT_TRUE(Has(html, "100 articles, 0 cleared. These are 1 to 48."));
    EXPECT_TRUE(Has(html, "id=\"label-48\""));
    EXPECT_FALSE(Has(html, "id=\"label-49\""));
    EXPECT_FALSE(Has(html, "Earlier"));
    EXPECT_TRUE(Has(html, "<a href=\"/?from=49&amp;grams=500#articles\">Later</a>"));

    model.from = 97;
    html = RenderContent(model);
    EXPECT_TRUE(Has(html, "These are 97 to 100."));
    EXPECT_TRUE(Has(html, "<a href=\"/?from=49&amp;grams=500#articles\">Earlier</a>"));
    EXPECT_FALSE(Has(html, "Later"));

    model.from = 101;
    html = RenderContent(model);
    EXPECT_TRUE(Has(html, "<a href=\"/?from=53&amp;grams=500#articles\">Earlier</a>"));
    EXPECT_FALSE(Has(html, "class=\"label\""));
}

TEST(PageTest, TheRequests_AreRows) {
    TPageModel model = Holding(0);
    model.requests.push_back({.number = 7,
                              .at = std::chrono::milliseconds(61005),
                              .command = "SetPrice",
                              .subject = "article 1, 0.05",
                              .reply = "refused: 3",
                              .bytes = "04 0D",
                              .replyBytes = "02 0D"});
    EXPECT_TRUE(Has(RenderContent(model),
                    "<tr><td data-title=\"No.\" class=\"number\">7</td>"
                    "<td data-title=\"Seconds\" class=\"number\">61.005</td>"
                    "<td data-title=\"Command\">SetPrice</td>"
                    "<td data-title=\"What\">article 1, 0.05</td>"
                    "<td data-title=\"Reply\">refused: 3</td>"));
}

TEST(PageTest, AFaultThatIsOn_CanBeSwitchedOff) {
    TPageModel model = Holding(0);
    model.faults = {{.text = "error,code=7", .on = true}, {.text = "slow"}};
    const std::string html = RenderContent(model);
    EXPECT_TRUE(
        Has(html,
            "<form method=\"post\" action=\"/faults?from=1&amp;grams=500\">"
            "<input type=\"hidden\" name=\"fault\" value=\"error,code=7\">"
            "<input type=\"hidden\" name=\"on\" value=\"0\">"
            "<button id=\"fault-0\" aria-pressed=\"true\" class=\"on\">error,code=7</button>"));
    EXPECT_TRUE(Has(html,
                    "<input type=\"hidden\" name=\"fault\" value=\"slow\">"
                    "<input type=\"hidden\" name=\"on\" value=\"1\">"
                    "<button id=\"fault-1\" aria-pressed=\"false\">slow</button>"));
}

TEST(PageTest, TheWholePage_NeedsNothingElse) {
    const std::string html = RenderPage(Holding(1), "00FF");
    EXPECT_TRUE(Has(html, "<style nonce=\"00FF\">"));
    EXPECT_TRUE(Has(html, "<script nonce=\"00FF\">"));
    EXPECT_TRUE(Has(html, "<title>Virtual scale ETS</title>"));
    for (const std::string_view other : {"http://", "https://", "@import", "src=", "url("})
        EXPECT_FALSE(Has(html, other)) << other;
}

}  // namespace
}  // namespace tolvane::simulator
