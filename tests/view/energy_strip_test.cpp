#include "view/energy_strip.h"

#include <gtest/gtest.h>

#include <memory>

#include "app/module1.h"
#include "recording_canvas.h"

namespace kestrel {
namespace {

TEST(EnergyStrip, HasItsTicksBelowTheChannelsOfTheirEnergies) {
    const auto module = std::make_unique<Module1>();
    test::RecordingCanvas canvas;
    const PlotInput input{module->spectrum, module->derived, module->view, module->channelColour,
                          module->palette};
    module->view = {.viewStartCh = 1024, .viewEndCh = 2048, .viewWidth = 1024};
    module->spectrum.calCurrent = {10, 0.5, 0};
    drawEnergyStrip(input, canvas);
    EXPECT_EQ(canvas.scale().left, plotScale(module->view).left);
    EXPECT_EQ(canvas.scale().right, plotScale(module->view).right);
    ASSERT_EQ(canvas.texts.size(), 6U);
    EXPECT_EQ(canvas.texts[0].text, "keV");
    double end = canvas.scale().left;
    for (std::size_t i = 0; i < canvas.texts.size(); ++i) {
        const test::Text& text = canvas.texts[i];
        const double width = canvas.textWidth(text.text);
        EXPECT_GE(text.x, end) << text.text;
        end = text.x + width;
        if (i > 0) {
            EXPECT_NEAR(text.x + width / 2, (std::stod(text.text) - 10) / 0.5, 1e-9) << text.text;
        }
    }
    EXPECT_LE(end, canvas.scale().right);
    module->spectrum.calCurrent = {1, 0, 0};
    drawEnergyStrip(input, canvas);
    EXPECT_TRUE(canvas.texts.empty() && canvas.lines.empty()) << "no energies, no axis";
}

}  // namespace
}  // namespace kestrel
