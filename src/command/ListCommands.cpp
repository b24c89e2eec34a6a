// What there is: articles, article lines, scales, network modules.

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <utility>

#include "articles/ArticleFields.h"
#include "comm/DeviceDiscovery.h"
#include "command/Command.h"
#include "command/LedgerContent.h"
#include "command/ProblemTable.h"
#include "command/ScaleProblems.h"
#include "command/Shop.h"
#include "command/WritePlan.h"
#include "config/SerialSpeeds.h"
#include "text/Cp1251.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {
namespace {

std::string ConnectionName(const TScaleRec& rec) {
    const std::string address = ToUtf8(rec.TCPAddress.View());
    switch (rec.CommType) {
        case kCommSerial: {
            const TSerialSpeed* const speed = SerialSpeed(rec.BaudRate);
            return address + ", " + (speed ? std::to_string(speed->bitsPerSecond) : "?") +
                   " bit/s, address " + std::to_string(rec.ScaleAddr);
        }
        case kCommTcp:
            return "TCP " + address + ":" + std::to_string(rec.TCPPort);
        case kCommUdp:
            return "UDP " + address;
        default:
            return "unknown";
    }
}

TCell FieldCell(const TArticleTable& table, TRowId row, const TFieldInfo& info) {
    switch (info.type) {
        case TFieldType::Integer:
            return Number(table.Integer(row, info.field));
        case TFieldType::Float:
            return table.Float(row, info.field);
        case TFieldType::Boolean:
            return table.Boolean(row, info.field);
        case TFieldType::Text:
            return ToUtf8(table.Text(row, info.field));
    }
    return {};
}

}  // namespace

TAnswer ListArticles(const TCommandOptions& options, TWorld& world) {
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table{.key = "articles", .title = {}, .columns = {}};
    for (const TFieldInfo& info : kFields)
        table.columns.push_back({std::string(info.name), ToUtf8(info.label)});
    for (const TRowId row : reading.articles.Order()) {
        std::vector<TCell>& cells = table.rows.emplace_back();
        for (const TFieldInfo& info : kFields)
            cells.push_back(FieldCell(reading.articles, row, info));
    }
    return {.report = {.command = "articles", .tables = {std::move(table)}}};
}

TAnswer ListLines(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    // What an article's line is does not depend on the scale's connection.
    const std::vector<TScaleRec> scales = RecordsOf(ChosenScales(shop, options, world));
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table{.key = "lines",
                       .title = {},
                       .columns = {{"scale", "Scale"},
                                   {"number", "Number"},
                                   {"name", "Name"},
                                   {"line", "Line"},
                                   {"leftOut", "Left out"}}};
    for (const TScaleRec& rec : scales) {
        const TArticleLineBuilder builder(reading.articles, shop.choices, world.regional,
                                          [](std::string_view) {});
        for (const TRowId row : reading.articles.Order()) {
            const TArticleLine line = builder.LineFor(row, rec.ScaleNumb);
            if (!line.isForScale) continue;
            table.rows.push_back({Number(rec.ScaleNumb),
                                  Number(reading.articles.Integer(row, TField::PLU_SCALE_NUMB)),
                                  ToUtf8(reading.articles.Text(row, TField::PLU_NAME)),
                                  ToUtf8(line.line),
                                  line.fault ? ToUtf8(FaultText(*line.fault)) : std::string()});
        }
    }
    return {.report = {.command = "lines", .tables = {std::move(table)}}};
}

TAnswer ListScales(const TCommandOptions& options, TWorld&) {
    const TShop shop = ReadShop(options);
    TReportTable table{.key = "scales",
                       .title = {},
                       .columns = {{"number", "No"},
                                   {"name", "Name"},
                                   {"model", "Model"},
                                   {"connection", "Connection"},
                                   {"encoding", "Code table"},
                                   {"checked", "Checked"}}};
    constexpr std::array kCodeTables = {"WIN-1252", "PC-855", "PC-866"};
    for (const TScaleRec& rec : RecordsOf(shop.scales)) {
        const auto encoding = static_cast<std::size_t>(rec.Encoding);
        table.rows.push_back(
            {Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()), ModelName(rec.ScaleType),
             ConnectionName(rec),
             std::string(encoding < kCodeTables.size() ? kCodeTables[encoding] : "?"),
             rec.Checked});
    }
    const std::vector<TProblem> problems = ProblemsOfScales(shop.scales);
    TReportTable found = ProblemTable(problems);
    found.title = "Problems";
    return {.report = {.command = "scales", .tables = {std::move(table), std::move(found)}},
            .exitCode = problems.empty() ? TExitCode::Done : TExitCode::ProblemsFound};
}

TAnswer DiscoverModules(const TCommandOptions&, TWorld& world) {
    TReportTable table{
        .key = "modules", .title = {}, .columns = {{"address", "Address"}, {"kind", "Kind"}}};
    const std::atomic<bool> stop = false;
    FindDevices(world.clock, stop, [&](const std::vector<TFoundDevice>& found) {
        for (const TFoundDevice& device : found)
            table.rows.push_back(
                {device.address,
                 std::string(device.kind == TDeviceKind::UdpModule ? "UDP" : "TCP")});
    });
    std::sort(table.rows.begin(), table.rows.end());
    table.rows.erase(std::unique(table.rows.begin(), table.rows.end()), table.rows.end());
    return {.report = {.command = "discover", .tables = {std::move(table)}}};
}

}  // namespace tolvane
