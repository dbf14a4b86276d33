// Files of today's programs, made here: what each format says comes out, and what cannot be read is
// refused with its place.

#include "spectrum/formats/exchange_formats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <ctime>

#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/loaded_record.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Numbers at places of a file of zeros.
class Bytes {
  public:
    explicit Bytes(std::size_t size) : bytes_(size, '\0') {}
    template <typename T>
    Bytes& put(std::size_t at, T value) {
        std::memcpy(bytes_.data() + at, &value, sizeof value);
        return *this;
    }
    Bytes& text(std::size_t at, std::string_view text) {
        bytes_.replace(at, text.size(), text);
        return *this;
    }
    const std::string& get() const { return bytes_; }

  private:
    std::string bytes_;
};

std::string repeated(int count, const std::string& line) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += line;
    return text;
}

std::string wide(const std::string& text) {
    std::string result;
    for (const char c : text)
        result += {c, '\0'};
    return result;
}

std::string spc(std::uint16_t type) {
    Bytes file(128 * 7);
    file.put(384 + 32, 4.5F);
    file.put<std::int16_t>(110, 6).put<std::int16_t>(640, 111).put<std::int16_t>(644, 7);
    file.put<std::int16_t>(768, 20).text(772, std::string_view("GPS\0Altitude:\t49M\r\n", 19));
    file.put<std::int16_t>(0, 1).put(2, type).put<std::int16_t>(8, 2).put<std::int16_t>(10, 3);
    file.put<std::int16_t>(34, 4).put<std::int16_t>(60, 5).put<std::int16_t>(64, 3);
    file.put(90, 12.5F).put(94, 10.0F).text(128 + 16, "17-SEP-121").text(128 + 28, "13:41:07");
    file.text(256, "Soil 1  ").put(384 + 20, 1.5F).put(384 + 24, 0.5F);
    for (std::size_t i = 0; i < 3; ++i) {
        if (type == 1)
            file.put<std::uint32_t>(512 + 4 * i, static_cast<std::uint32_t>(i + 1));
        else
            file.put(512 + 4 * i, static_cast<float>(i) + 0.5F);
    }
    return file.get();
}

std::uint32_t vax(float value) {
    return value == 0 ? 0 : std::rotl(std::bit_cast<std::uint32_t>(value * 4), 16);
}

std::string cnf() {
    constexpr std::size_t parameters = 0x800;
    constexpr std::size_t counts = 0x1000;
    Bytes file(0x1400);
    file.put<std::uint16_t>(0, 0x0400).put<std::uint32_t>(6, 0x800);
    file.put<std::uint16_t>(0x10, 0x30).put<std::uint16_t>(0x12, 0x29);
    file.put<std::uint32_t>(0x70, 0x12000).put<std::uint32_t>(0x7A, parameters);
    file.put<std::uint32_t>(0xA0, 0x12005).put<std::uint32_t>(0xAA, counts);
    file.put<std::uint32_t>(parameters, 0x12000).put<std::uint16_t>(parameters + 0x22, 0x200);
    file.put<std::uint16_t>(parameters + 0x24, 0x180).text(parameters + 0xB0, "PHA ");
    const std::size_t times = parameters + 0x30 + 0x180;
    file.put<std::uint64_t>(times + 1, (3506716800 + 1600000000) * std::uint64_t{10000000});
    file.put<std::int64_t>(times + 9, -125000000).put<std::int64_t>(times + 0x11, -100000000);
    const std::size_t terms = parameters + 0x30 + 0x200 + 0x44;
    file.put(terms, vax(1e-3F)).put(terms + 4, vax(5e-4F)).put(terms + 8, vax(2.5e-4F));
    file.text(terms - 0x44 + 0x5C, "MeV");
    file.put<std::uint32_t>(counts, 0x12005).put<std::uint16_t>(counts + 0x10, 0x30);
    file.put<std::uint16_t>(counts + 0x28, 0x10).put<std::uint16_t>(counts + 0x2A, 3);
    for (std::uint32_t i = 0; i < 3; ++i)
        file.put<std::uint32_t>(counts + 0x40 + 4 * i, i + 1);
    return file.get();
}

std::string n42of2012(const std::string& data, const std::string& calibration) {
    return "\n<?xml version=\"1.0\"?><a:RadInstrumentData>"
           "<a:RadDetectorInformation id=\"d1\"><RadDetectorName>HPGe</RadDetectorName>"
           "</a:RadDetectorInformation><x:Undeclared/>"
           "<a:RadMeasurement id=\"m1\"><MeasurementClassCode>Foreground</MeasurementClassCode>"
           "<StartDateTime>2024-05-06T07:08:09.5Z</StartDateTime>"
           "<RealTimeDuration>PT1M2.5S</RealTimeDuration><Spectrum id=\"s\" "
           "radDetectorInformationReference=\"d1\" energyCalibrationReference=\"e\">"
           "<LiveTimeDuration>PT60S</LiveTimeDuration>" +
           data + "</Spectrum></a:RadMeasurement><EnergyCalibration id=\"e\">" + calibration +
           "</EnergyCalibration></a:RadInstrumentData>";
}

const std::string packed =
    "<ChannelData compressionCode=\"CountedZeroes\">7 0 3 4 0 1 9 0 2</ChannelData>";
const std::string spe =
    "$SPEC_ID:\r\nSoil 1\r\r\n\r\n$DATE_MEA:\r\n01/12/2014 3:12:28 PM\r\n$MEAS_TIM:\r\n"
    "841.42 849.51\r\n$DATA:\r\n0 3\r\n  1\r\n2\r\n3 4\r\n$ENER_FIT:\r\n0.5 "
    "0.7\r\n$MCA_CAL:\r\n3\r\n"
    "0.25 0.75 1E-006 keV\r\n";
const std::string iec =
    "A004\r\nA004  10.00  12.50  3\r\nA00413/02/21 10:54:31\r\n"
    "A004 1.0E+00 5.0E-01-2.0E-06 0.0E+00\r\n" +
    repeated(3, "A004\r\n") + "A004    Soil 1\r\n" + repeated(38, "A004\r\n") +
    "A004USERDEFINED\r\n" + repeated(11, "A0042 pi\r\n") +
    "A004     0         1         2         3         0         0\r\n\x1A";
const std::string shortIec =
    "A004" + std::string(24, ' ') + "    10\nA00410 12.5 3\nA004\nA0041 .5\nA004\nA004SPARE\n" +
    "A004 5 1 7 2\nA004USERDEFINED\nA004     0         1         2         3";
const std::string textSpc =
    "SpectrumName          : Soil 1\nLength                : 3\nRealtime              : 12.5\n"
    "Livetime              : 10\nStarttime             : 12.01.2014 03:12:28\n"
    "CalibCoeff            : a=0 b=1e-6 c=0.5 d=1\n1,2\n3\n";

TEST(ExchangeFormats, SayWhatTheFilesHold) {
    const LocalTime january{
        .year = 2014, .month = 1, .day = 12, .hour = 15, .minute = 12, .second = 28};
    LocalTime early = january;
    early.hour = 3;
    const LocalTime september{2012, 9, 17, 13, 41, 7};
    struct Case {
        const char* about;
        std::string bytes;
        std::vector<double> counts;
        double live;  // 0: none
        double real;
        std::optional<LocalTime> start;
        std::vector<double> energies;  // of channels 0 and 2, keV
        const char* title;
    };
    const Case cases[] = {
        {"SPE", spe, {1, 2, 3, 4}, 841.42, 849.51, january, {0.25, 1.750004}, "Soil 1"},
        {"SPE in UTF-16", "\xFF\xFE" + wide("$DATA:\n0 1\n5\n6"), {5, 6}, 0, 0, {}, {}, ""},
        {"SPC", spc(1), {1, 2, 3}, 10, 12.5, september, {1.5, 2.5}, "Soil 1"},
        {"SPC of real counts", spc(5), {0.5, 1.5, 2.5}, 10, 12.5, september, {1.5, 2.5}, "Soil 1"},
        {"text SPC", textSpc, {1, 2, 3}, 10, 12.5, early, {1, 2.000004}, "Soil 1"},
        {"CNF", cnf(), {1, 2, 3}, 10, 12.5, LocalTime{2020, 9, 13, 12, 26, 40}, {1.75, 4.75}, ""},
        {"N42 of 2012",
         n42of2012(packed, "<CoefficientValues>1 0.5 0 </CoefficientValues>"),
         {7, 0, 0, 0, 4, 0, 9, 0, 0},
         60,
         62.5,
         LocalTime{2024, 5, 6, 7, 8, 9},
         {1, 2},
         ""},
        {"N42 with boundaries",
         n42of2012(packed, "<EnergyBoundaryValues>1 2 3 4 5 6 7 8 9 10</EnergyBoundaryValues>"),
         {7, 0, 0, 0, 4, 0, 9, 0, 0},
         60,
         62.5,
         LocalTime{2024, 5, 6, 7, 8, 9},
         {1, 3},
         ""},
        {"N42 of 2006",
         "<N42InstrumentData><Measurement><Spectrum><StartTime>2014-01-12T15:12:28"
         "</StartTime><LiveTime Unit=\"sec\">PT10S</LiveTime><RealTime>12.5</RealTime>"
         "<Calibration Type=\"FWHM\"/><Calibration Type=\"Energy\" EnergyUnits=\"MeV\"><Equation>"
         "<Coefficients>0.001 0.0005</Coefficients></Equation></Calibration>"
         "<ChannelData Start='3'>1 2 3 4 5 6 7 "
         "8</ChannelData></Spectrum></Measurement></N42InstrumentData>",
         {0, 0, 1, 2, 3, 4, 5, 6, 7, 8},
         10,
         12.5,
         january,
         {1, 2},
         ""},
        {"IEC",
         iec,
         {1, 2, 3},
         10,
         12.5,
         LocalTime{2021, 2, 13, 10, 54, 31},
         {1, 1.999992},
         "Soil 1"},
        {"IEC of few lines in UTF-16, channels from 10 on",
         "\xFF\xFE" + wide(shortIec),
         {1, 2, 3},
         10,
         12.5,
         {},
         {6, 7},
         ""},
        {"TKA with times for counts",
         "10\n12.5\n" + repeated(30, "3\n"),
         [] {
             std::vector<double> c(32, 3);
             c[0] = c[1] = 0;
             return c;
         }(),
         10,
         12.5,
         {},
         {},
         ""},
        {"TKA",
         "10\n12.5\n" + repeated(32, "3\n"),
         std::vector<double>(32, 3),
         10,
         12.5,
         {},
         {},
         ""},
        {"counts alone",
         "5\n" + repeated(19, "3.5\n"),
         [] {
             std::vector<double> c(20, 3.5);
             c[0] = 5;
             return c;
         }(),
         0,
         0,
         {},
         {},
         ""},
    };
    for (const Case& c : cases) {
        const std::vector<MeasuredSpectrum> spectra = readExchangeBytes(c.bytes);
        ASSERT_EQ(spectra.size(), 1U) << c.about;
        const MeasuredSpectrum& spectrum = spectra.front();
        EXPECT_EQ(spectrum.counts, c.counts) << c.about;
        EXPECT_EQ(spectrum.liveSeconds.value_or(0), c.live) << c.about;
        EXPECT_EQ(spectrum.realSeconds.value_or(0), c.real) << c.about;
        EXPECT_EQ(spectrum.start, c.start) << c.about;
        EXPECT_EQ(spectrum.title, c.title) << c.about;
        const auto fitted = fittedCalibration(spectrum);
        EXPECT_EQ(fitted.has_value(), !c.energies.empty()) << c.about;
        if (!fitted || c.energies.empty())
            continue;
        const Calibration& k = fitted->calibration;
        EXPECT_NEAR(k.a, c.energies[0], 1e-6) << c.about;
        EXPECT_NEAR(k.a + 2 * k.b + 4 * k.c, c.energies[1], 1e-6) << c.about;
    }
}

TEST(ExchangeFormats, ListWhatTheRecordHasNoFieldFor) {
    const MeasuredSpectrum spectrum = readExchangeBytes(spc(1)).front();
    std::string list;
    for (const NamedValue& detail : spectrum.details)
        list += detail.name + "=" + detail.value + ";";
    EXPECT_EQ(list, "FWHM terms (channels)=4.5000E+00 0 0;Report=GPS;Altitude=49M;");
}

TEST(ExchangeFormats, ReadTablesByTheirColumns) {
    const auto table = [](const std::string& head, const char* separator, bool decimals) {
        std::string text = head;
        for (int i = 0; i < 20; ++i)
            text += std::to_string(i) + (decimals ? ",5" : "") + separator + std::to_string(i * i) +
                    "\n";
        return readExchangeBytes(text).front();
    };
    EXPECT_EQ(table("", ",", false).counts[19], 361);
    EXPECT_TRUE(table("", "\t", false).energies.empty());
    EXPECT_EQ(table("Energy; Counts\n", ";", true).energies[3].energy, 3.5);
    EXPECT_THAT(table("Height\tCounts\n", "\t", true).notices,
                ElementsAre(HasSubstr("0.5 to 19.5")));
    std::string own =
        "FILE NAME : /a,b.csv\r\nComment   : Soil 1\r\nDate      : 16NOV26 - 12:30:37\r\n"
        "Meas. Time: 600 sec\r\n";
    for (int i = 0; i < 20; ++i)
        own += "     " + std::to_string(i) + ",    123\r\n";
    const MeasuredSpectrum spectrum = readExchangeBytes(own).front();
    EXPECT_EQ(spectrum.counts, std::vector<double>(20, 123));
    EXPECT_EQ(spectrum.liveSeconds, 600);
    EXPECT_EQ(spectrum.start, (LocalTime{2026, 11, 16, 12, 30, 37}));
}

TEST(ExchangeFormats, TellSeveralSpectraOfAFileApart) {
    const auto two = readExchangeBytes(spe + "$ENDRECORD:\r\n" + spe);
    EXPECT_EQ(two.size(), 2U);
    const std::string one =
        "<RadMeasurement id=\"a\"><MeasurementClassCode>Calibration"
        "</MeasurementClassCode><Spectrum>" +
        packed + "</Spectrum></RadMeasurement>";
    const std::string other = "<RadMeasurement id=\"b\"><Spectrum>" + packed +
                              "</Spectrum><Spectrum>" + packed + "</Spectrum></RadMeasurement>";
    const auto three =
        readExchangeBytes("<RadInstrumentData>" + one + other + "</RadInstrumentData>");
    ASSERT_EQ(three.size(), 3U);
    EXPECT_EQ(three[0].name, "a Calibration");
    EXPECT_EQ(three[1].name, "b #2");
    EXPECT_EQ(preferredSpectrum(three), 1U);
}

TEST(ExchangeFormats, RefuseWithThePlaceAndTheReason) {
    const std::string channels =
        "<ChannelData compressionCode=\"CountedZeroes\">1 0 1000000000 "
        "</ChannelData>";
    const std::pair<std::string, const char*> cases[] = {
        {"", "no known"},
        {"GIF89a", "no known"},
        {std::string(5000, '\0'), "no known"},
        {"$SPEC_ID:\nx\n", "No block $DATA:"},
        {"$DATA:\n0 4095\n1\n2\n", "Line 2: $DATA: promises 4096 counts, the file has 2."},
        {"$DATA:\n0 1\n1\nx\n", "Line 4: $DATA: Counts expected, found \"x\""},
        {"$DATA:\n0 1\n1\nnan\n", "found \"nan\""},
        {"$DATA:\n0 1\n1\n3000000000\n", "Channel 1 has 3000000000 counts"},
        {"$DATA:\n0 1000000000\n", "1 to 131072 channels"},
        {repeated(65, "$DATA:\n131071 131071\n1\n$ENDRECORD:\n"), "or 8388608 counts"},
        {repeated(200001, "$A:\n"), "more than 200000 blocks"},
        {spc(1).substr(0, 515), "ends before its 3 counts"},
        {cnf().substr(0, 0x1042), "ends before its 3 counts"},
        {cnf().replace(0x1000, 4, "xxxx"), "No block of counts"},
        {n42of2012(channels, ""), "1 to 131072 channels"},
        {n42of2012("", ""), "no spectrum in this file"},
        {n42of2012(packed, "").substr(0, 600), "Line 2: This is no XML"},
        {"<RadInstrumentData>" + repeated(500001, "<a/>"), "elements"},
        {iec.substr(0, iec.find("A004     0") + 22), "promises 3 counts, the file has 1"},
        {"SpectrumName : x\nLength : 5\nCalibCoeff : a=0\n1,2\n", "promises 5 counts"},
        {repeated(20, "1 2\n") + "1 2 3\n", "Line 21: 2 columns expected, found 3"},
        {repeated(20, "1 2\n"), "do not rise"},
    };
    for (const auto& [bytes, why] : cases) {
        try {
            readExchangeBytes(bytes);
            ADD_FAILURE() << why;
        } catch (const FormatError& error) {
            EXPECT_THAT(error.what(), HasSubstr(why));
        }
    }
}

// What is read of a cut file has no more channels and no higher counts than the whole one, or it is
// refused with a reason; a file with any byte changed can be loaded or is refused.
TEST(ExchangeFormats, AreRefusedOrReadWhereverAFileIsCutOrChanged) {
    const auto spectrum = std::make_unique<Spectrum>();
    const std::string table = "Comment,a\nStart,2026-11-16 12:30:37\nCalibration (keV),1,0.5,0\n";
    for (const std::string& whole :
         {spc(1), spc(5), cnf(), iec, shortIec, textSpc, spe, table + repeated(18, "12\n"),
          "10\n12.5\n" + repeated(30, "34\n"),
          n42of2012(packed, "<CoefficientValues>1 0.5 0</CoefficientValues>")}) {
        const std::vector<double> counts = readExchangeBytes(whole).at(0).counts;
        std::size_t refused = 0;
        const auto read = [&](const std::string& bytes, bool cut) {
            try {
                const MeasuredSpectrum measured = readExchangeBytes(bytes).at(0);
                takeMeasured(measured, channelsToGroup(measured), *spectrum);
                EXPECT_GT(spectrum->channelCount, 0);
                if (!cut)
                    return;
                EXPECT_LE(measured.counts.size(), counts.size()) << bytes;
                EXPECT_LE(std::ranges::max(measured.counts), std::ranges::max(counts)) << bytes;
            } catch (const FormatError& error) {
                EXPECT_STRNE(error.what(), "");
                ++refused;
            }
        };
        for (std::size_t length = 0; length < whole.size(); ++length)
            read(whole.substr(0, length), true);
        EXPECT_GE(refused, 20U) << whole;
        for (std::size_t at = 0; at < whole.size(); ++at) {
            std::string changed = whole;
            changed[at] = static_cast<char>(~changed[at]);
            read(changed, false);
        }
    }
}

// Each took from 6 s to without end, though it is smaller than 1 MB.
TEST(ExchangeFormats, TakeNoTimeForWhatThousandsOfSpectraShare) {
    const std::string spectra =
        repeated(9000, "<Spectrum><ChannelData>1 1 1 1 1 1 1 1</ChannelData></Spectrum>");
    const std::string shared[] = {
        repeated(100000, "<a/>"),
        "<" + repeated(200000, "b") + "/>",
        repeated(5000, "<InstrumentID>x</InstrumentID>"),
        "<EnergyCalibration id='a'><EnergyBoundaryValues>" + repeated(100000, "1 ") +
            "</EnergyBoundaryValues></EnergyCalibration>",
    };
    std::vector<std::string> files = {
        "$ENER_FIT:\n" + repeated(20000, "1 ") + "\n$DATA:\n131071 131071\n1\n",
        "SpectrumName : x\nLength : 1\nCalibCoeff : " + repeated(250000, "1 ") + "\n1\n",
    };
    for (const std::string& part : shared)
        files.push_back("<RadInstrumentData>" + part + spectra + "</RadInstrumentData>");
    for (const std::string& file : files) {
        const std::clock_t begin = std::clock();
        const std::vector<MeasuredSpectrum> read = readExchangeBytes(file);
        fittedCalibration(read.at(0));
        EXPECT_LT(std::clock() - begin, 4 * CLOCKS_PER_SEC) << file.substr(0, 60);
    }
}

TEST(ExchangeFormats, BecomeTheLoadedSpectrumWholeOrNotAtAll) {
    const auto spectrum = std::make_unique<Spectrum>();
    MeasuredSpectrum measured = readExchangeBytes(spe).front();
    measured.counts = {0.5, 1.5, 2.5, 3};
    EXPECT_THAT(takeMeasured(measured, 1, *spectrum).notices, ElementsAre(HasSubstr("fractions")));
    EXPECT_EQ(spectrum->channelCount, 4);
    EXPECT_EQ(spectrum->counts[0], 0);
    EXPECT_EQ(spectrum->counts[1], 2);
    EXPECT_EQ(spectrum->liveTime.count, 42071);
    EXPECT_EQ(spectrum->startDate.view(), "12JAN141");
    EXPECT_EQ(spectrum->startTime.view(), "151228");
    EXPECT_EQ(spectrum->comment.trimmed(), "Soil 1");
    EXPECT_EQ(spectrum->calCurrent, (Calibration{0.25, 0.75, 1e-6}));

    measured.counts.assign(32768, 1);
    ASSERT_EQ(channelsToGroup(measured), 2);
    takeMeasured(measured, 2, *spectrum);
    EXPECT_EQ(spectrum->channelCount, 16384);
    EXPECT_EQ(spectrum->counts[16383], 2);
    EXPECT_NEAR(spectrum->calCurrent.a, 0.25 + 0.75 * 0.5 + 1e-6 * 0.25, 1e-12);

    measured.liveSeconds = 1e9;
    measured.title = "other";
    EXPECT_THROW(takeMeasured(measured, 2, *spectrum), FormatError);
    EXPECT_EQ(spectrum->comment.trimmed(), "Soil 1");
}

// A cubic calibration is shown as the nearest parabola, and that is told.
TEST(ExchangeFormats, FitAParabolaWhereTheFileHasMore) {
    MeasuredSpectrum measured;
    measured.counts.assign(1000, 1);
    measured.coefficients = {1, 2, 1e-4, 1e-8};
    const auto fitted = fittedCalibration(measured);
    ASSERT_TRUE(fitted);
    EXPECT_GT(fitted->largestDifference, 0.1);
    EXPECT_LT(fitted->largestDifference, 0.6);
    for (const std::vector<double>& bad :
         {std::vector<double>{0, -1}, {0, 0}, {5}, {0, 1, -1}, {0, 1e9}}) {
        measured.coefficients = bad;
        EXPECT_FALSE(fittedCalibration(measured)) << testing::PrintToString(bad);
    }
}

}  // namespace
}  // namespace kestrel
