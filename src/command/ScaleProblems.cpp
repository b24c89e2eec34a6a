#include "command/ScaleProblems.h"

#include <map>
#include <string>
#include <utility>

#include "comm/DevCommBaseUnit.h"
#include "comm/UdpSocket.h"
#include "config/SerialSpeeds.h"
#include "system/SerialPortList.h"
#include "text/Cp1251.h"
#include "text/IpAddress.h"

namespace tolvane {
namespace {

bool IsKnownModel(std::int32_t type) {
    return type == kScaleTypeEvl || type == kScaleTypeEts || type == kScaleTypeS300;
}

// Scales that nothing tells apart on the wire.
std::string WirePlaceOf(const TScaleRec& rec, const TReach& reach) {
    std::string place = reach.linkOf(rec);
    if (rec.CommType == kCommSerial) place += " " + std::to_string(rec.ScaleAddr);
    return place;
}

void CheckSerialPort(const TScaleRec& rec, const TReach& reach, std::vector<TProblem>& problems) {
    const std::string port = reach.serialPortOf(rec);
    if (reach.hasSerialPort(port)) return;
    const std::string name = rec.TCPAddress.Str();
    problems.push_back(
        OfScale(rec,
                "this computer has no serial port " + name +
                    (EqualIgnoringCase(port, name) ? "" : ", which is " + FromUtf8(port)),
                "plug it in, or correct the scale's port"));
}

void CheckAddress(const TScaleRec& rec, const TReach& reach, std::vector<TProblem>& problems) {
    if (rec.CommType == kCommSerial) CheckSerialPort(rec, reach, problems);
    if (!IsNetworkConnection(rec.CommType)) return;
    const auto address = ParseIpV4(rec.TCPAddress.Str());
    if (!address)
        problems.push_back(OfScale(rec, Quoted(rec.TCPAddress.View()) + " is not an IP address",
                                   "correct the scale's address"));
    else if (!reach.hasRoute(*address))
        problems.push_back(OfScale(rec, "this computer has no route to " + rec.TCPAddress.Str(),
                                   "check the network, or correct the scale's address"));
}

void CheckKinds(const TScaleRec& rec, std::vector<TProblem>& problems) {
    if (!IsKnownModel(rec.ScaleType))
        problems.push_back(OfScale(rec,
                                   "model " + std::to_string(rec.ScaleType) +
                                       " is unknown; it would get price, name, best-before and "
                                       "barcode only",
                                   "choose the model"));
    if (rec.CommType == kCommSerial && SerialSpeed(rec.BaudRate) == nullptr)
        problems.push_back(OfScale(rec,
                                   "speed " + std::to_string(rec.BaudRate) +
                                       " is unknown; it would be spoken to with 38400 bit/s",
                                   "choose the speed"));
    if (rec.Encoding < kCodeTableRaw || rec.Encoding > kCodeTablePc866)
        problems.push_back(OfScale(rec,
                                   "code table " + std::to_string(rec.Encoding) +
                                       " is unknown; the scale would show other letters",
                                   "choose the code table"));
}

TProblem SamePlace(const TScaleRec& rec, const TScaleRec& other) {
    return OfScale(rec,
                   "it has the connection of scale " + std::to_string(other.ScaleNumb) + " " +
                       Quoted(other.ScaleName.View()),
                   "give each scale a connection of its own");
}

TProblem SameNumber(const TScaleRec& rec, const TScaleRec& other) {
    return OfScale(rec,
                   "it has the number of scale " + Quoted(other.ScaleName.View()) +
                       "; what has changed cannot be told, so everything is written each time",
                   "give each scale a number of its own", TSeverity::Warning);
}

}  // namespace

TProblem OfScale(const TScaleRec& rec, std::string problem, std::string cure, TSeverity severity) {
    return {.severity = severity,
            .scale = rec.ScaleNumb,
            .name = rec.ScaleName.Str(),
            .problem = std::move(problem),
            .cure = std::move(cure)};
}

TReach ReachBy(const TLinkFactory& links) {
    return {.hasRoute = &HasRoute,
            .hasSerialPort = &HasSerialPort,
            .serialPortOf = [&links](const TScaleRec& rec) { return links.SerialPortOf(rec); },
            .linkOf = [&links](const TScaleRec& rec) { return links.LocksOf(rec).front().name; }};
}

std::vector<TProblem> ProblemsOfScales(const std::vector<TListedScale>& scales,
                                       const TReach& reach) {
    std::vector<TProblem> problems;
    std::map<std::string, const TScaleRec*> places;
    std::map<std::int32_t, const TScaleRec*> numbers;
    for (const TListedScale& scale : scales) {
        const TScaleRec& rec = scale.rec;
        const auto [number, isNewNumber] = numbers.try_emplace(rec.ScaleNumb, &rec);
        if (!isNewNumber) problems.push_back(SameNumber(rec, *number->second));
        if (!scale.IsUsable()) {
            problems.push_back(OfScale(rec, scale.fault, scale.cure));
            continue;
        }
        CheckKinds(rec, problems);
        CheckAddress(rec, reach, problems);
        const auto [place, isNewPlace] = places.try_emplace(WirePlaceOf(rec, reach), &rec);
        if (!isNewPlace) problems.push_back(SamePlace(rec, *place->second));
    }
    return problems;
}

}  // namespace tolvane
