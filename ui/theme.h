#pragma once

#include <QColor>
#include <QFont>

/// The colours, sizes and fonts that every widget draws with, so that two screens never differ by a shade.
namespace tarnby::theme {

constexpr QColor rgb(unsigned value) {
  return QColor(static_cast<int>(value >> 16U), static_cast<int>((value >> 8U) & 0xFFU),
                static_cast<int>(value & 0xFFU));
}

inline constexpr QColor background = rgb(0x515360);
inline constexpr QColor wave_ground = rgb(0x5E6070);             // the brightest curve that lines of text stand on
inline constexpr QColor panel = QColor(0x1E, 0x1F, 0x26, 71);    // 28 % over the background
inline constexpr QColor sheet = rgb(0x454752);                   // a card that lies over the window
inline constexpr QColor card = QColor(0xFF, 0xFF, 0xFF, 18);     // 7 %: a card lifted off the background
inline constexpr QColor hover = QColor(0xFF, 0xFF, 0xFF, 15);    // 6 %: a row under the pointer
inline constexpr QColor pointed = QColor(0xFF, 0xFF, 0xFF, 18);  // a button under the pointer
inline constexpr QColor pressed = QColor(0x00, 0x00, 0x00, 32);  // a button held down
inline constexpr QColor track = QColor(0xFF, 0xFF, 0xFF, 28);    // 11 %: what a ring or bar has not reached yet

inline constexpr QColor text = rgb(0xFFFFFF);
inline constexpr QColor secondary = rgb(0xC9CBD6);
inline constexpr QColor faint = rgb(0xA9ACBA);

inline constexpr QColor light_background = rgb(0xF9F9F9);
inline constexpr QColor light_text = rgb(0x2B2C33);
inline constexpr QColor light_secondary = rgb(0x5B5D6A);

inline constexpr QColor accent = rgb(0x3EC6B4);
inline constexpr QColor on_accent = rgb(0x0B2F2A);
inline constexpr QColor gradient_start = rgb(0x5FE3CE);
inline constexpr QColor gradient_end = rgb(0x4C8DF6);
/// White reads at 2 : 1 on the gradient's light half; this reads at more than 4.5 : 1 on all of it.
inline constexpr QColor on_gradient = rgb(0x0A1F2B);
/// Only for the button that removes.
inline constexpr QColor destructive = rgb(0xFF7A6B);
inline constexpr QColor on_destructive = rgb(0x3A0F0A);

/// The colours that tell one kind of thing from another, in tags and charts.
inline constexpr QColor blue = rgb(0x5AA9FF);
inline constexpr QColor violet = rgb(0xA78BFA);
inline constexpr QColor amber = rgb(0xFBBF24);
inline constexpr QColor teal = rgb(0x2DD4BF);
inline constexpr QColor pink = rgb(0xF472B6);
inline constexpr QColor orange = rgb(0xFB923C);
inline constexpr QColor silver = rgb(0xCBD5E1);
inline constexpr QColor azure = rgb(0x60A5FA);
inline constexpr QColor green = rgb(0x34D399);

inline constexpr int grid = 8;
inline constexpr int row_height = 44;
inline constexpr int file_row_height = 34;
inline constexpr int button_height = 40;
inline constexpr int panel_radius = 14;

/// The only text sizes there are, in pixels at text scale 1.
enum class Type { huge = 52, large = 28, heading = 20, title = 16, body = 14, detail = 13, note = 12, tiny = 11 };
enum class Weight { regular = 400, strong = 600 };

/// The font of a text: Inter where it is installed, else the system's own.
QFont font(Type type, Weight weight = Weight::regular);

/// How much larger than usual a person wants texts. Set it before widgets are made; they do not ask again.
double text_scale();
void set_text_scale(double scale);

/// `top` laid over an opaque `bottom`.
QColor over(const QColor& top, const QColor& bottom);
/// A colour between two, 0 giving `from` and 1 giving `to`.
QColor blend(const QColor& from, const QColor& to, double part);

/// How strongly two opaque colours differ in brightness: 1 (not at all) to 21 (black on white).
double contrast(const QColor& one, const QColor& other);

inline constexpr double readable_contrast = 4.5;
/// `wanted`, moved towards white or black just as far as it takes to be read on `ground`.
QColor readable(const QColor& wanted, const QColor& ground);

/// What the panel looks like over the window's background.
QColor panel_ground();
/// The text of a control that cannot be used: fainter than any other, yet still to be read.
QColor disabled_text();

}  // namespace tarnby::theme
