#include "bench/acs/drawn_character.h"

#include "common/text.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace bench {
namespace {

using agent::acs::Animation;
using agent::acs::Character;
using agent::acs::Frame;
using agent::acs::Image;

constexpr std::size_t frames_an_animation = 25;
constexpr std::size_t sound_size = 40'000;

struct Ball {
    double x, y, radius;
    int first_colour; // of sixteen, from dark to light
};

// Each ball is lit from the upper left and dithered between its shades.
void draw(Image& image, const Ball& ball, std::mt19937& random) {
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const double dx = (x - ball.x) / ball.radius;
            const double dy = (y - ball.y) / ball.radius;
            const double square = dx * dx + dy * dy;
            if (square > 1) {
                continue;
            }
            const double light = 0.55 + 0.4 * (dy - dx) * std::sqrt(1 - square * 0.5);
            const double dither = static_cast<double>(random() % 64) / 64 * 0.6;
            const int shade = square > 0.93 ? 0 : std::clamp(static_cast<int>(light * 15 + dither), 1, 15);
            image.pixels[static_cast<std::size_t>(y) * image.stride() + static_cast<std::size_t>(x)] =
                static_cast<std::uint8_t>(ball.first_colour + shade);
        }
    }
}

Image picture(const Scale& scale, std::size_t number, std::mt19937& random) {
    Image image;
    image.width = scale.width;
    image.height = scale.height;
    image.pixels.assign(std::size_t{image.stride()} * image.height, 0);
    const double phase = static_cast<double>(number) * 0.37;
    const double w = scale.width;
    const double h = scale.height;
    draw(image, {w * (0.5 + 0.03 * std::sin(phase)), h * 0.35, w * 0.3, 16}, random);
    draw(image, {w * 0.5, h * (0.72 + 0.02 * std::cos(phase)), w * 0.22, 64}, random);
    for (int arm = -1; arm <= 1; arm += 2) {
        const double angle = phase + arm;
        draw(image, {w * (0.5 + arm * 0.3), h * (0.6 + 0.12 * std::sin(angle)), w * 0.08, 112}, random);
        draw(image, {w * (0.5 + arm * 0.1), h * (0.4 + 0.02 * std::sin(angle)), w * 0.05, 200}, random);
    }
    return image;
}

} // namespace

Character drawnCharacter(const Scale& scale) {
    std::mt19937 random(1);
    Character character;
    character.width = scale.width;
    character.height = scale.height;
    character.palette.resize(256);
    character.names.push_back({0x0409, u"Bench", u"", u""});
    for (std::size_t i = 0; i < scale.images; ++i) {
        character.images.push_back(picture(scale, i, random));
    }
    for (std::size_t i = 0; i < scale.sounds; ++i) {
        std::vector<std::uint8_t> sound(sound_size);
        std::ranges::generate(sound, [&random] { return static_cast<std::uint8_t>(random()); });
        character.sounds.push_back(std::move(sound));
    }
    for (std::size_t first = 0; first < scale.frames; first += frames_an_animation) {
        Animation animation;
        animation.name = u"Animation" + murmelix::toText(static_cast<long long>(first));
        animation.frames.resize(std::min(frames_an_animation, scale.frames - first));
        for (std::size_t i = 0; i < animation.frames.size(); ++i) {
            Frame& frame = animation.frames[i];
            const std::size_t image = (first + i) % scale.images;
            frame.images = {{static_cast<std::uint32_t>(image), 0, 0},
                            {static_cast<std::uint32_t>((image + 7) % scale.images), 5, -5}};
            frame.branches = {{0, 10}, {static_cast<std::uint16_t>(i), 20}};
        }
        character.animations.push_back(std::move(animation));
    }
    return character;
}

} // namespace bench
