#ifndef QV_CONSOLE_RENDERER_H
#define QV_CONSOLE_RENDERER_H

#include <SFML/Graphics/Color.hpp>
#include <SFML/Graphics/Vertex.hpp>
#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "graphics/Console.h"

namespace sf {
class Font;
class RenderTarget;
class RenderTexture;
}  // namespace sf

namespace qv {

// Draws a console's characters into a window in one draw call per run of
// characters. Each character is its cell rectangle in the background colour
// followed by its glyph from the font's glyph texture, so the picture is the
// one an sf::RectangleShape and a bold sf::Text would draw character by
// character; the rectangles take the opaque white corner SFML keeps in every
// glyph texture, so both go into one vertex array in drawing order.
//
// A frame's first run is usually the same as the last frame's (nothing
// moved). Once it repeats, its picture is kept in a texture, transparent
// where nothing was drawn, and from then on laid over the window instead of
// drawing every cell again. Its colours are kept premultiplied by coverage,
// so it lands on whatever the frame drew before it exactly as the cells would.
class ConsoleRenderer {
 public:
  // A rectangle by its edges, as vertices are made from them.
  struct Quad {
    float left, top, right, bottom;
  };

  ConsoleRenderer();
  ~ConsoleRenderer();
  ConsoleRenderer(const ConsoleRenderer &) = delete;
  ConsoleRenderer &operator=(const ConsoleRenderer &) = delete;

  // Draws with the font in bold at a character size, on cells of the
  // background colour. The font must outlive the renderer's use of it.
  void start(const sf::Font &font, unsigned int character_size, sf::Color background);
  // Forgets the font and frees the kept picture.
  void stop();
  // The size of every later cell rectangle, in pixels.
  void setCellSize(float width, float height);

  // Whether the console holds characters this renderer has not drawn yet.
  bool hasUndrawn(const Console &console) const;

  // Draws the characters of the console's frame not drawn yet.
  void draw(const Console &console, sf::RenderTarget &target);
  // The console started a new frame: none of its characters are drawn.
  void startFrame();

 private:
  // Where a character's glyph lies around its pixel position and in the
  // glyph texture; looked up once per character code.
  struct GlyphQuad {
    bool loaded;
    bool visible;  // false for the blanks sf::Text draws nothing for
    Quad bounds;   // from the glyph's position
    Quad texture;  // in the glyph texture, in pixels
  };

  const GlyphQuad &glyph(char ch);
  void addCharacter(const Console::Char &c);
  void drawVertices(sf::RenderTarget &target) const;
  // Draws the vertices into the kept texture; false when there can be none.
  bool keep(const sf::RenderTarget &target);
  void showKept(sf::RenderTarget &target) const;
  void forgetKept();

  const sf::Font *m_p_font;                     // null: not started
  unsigned int m_character_size;                // 0: glyph size in pixels
  sf::Color m_background;                       // opaque black: cell rectangle fill
  float m_cell_width;                           // 0: cell rectangle size
  float m_cell_height;                          // 0
  std::array<GlyphQuad, 256> m_glyphs;          // by unsigned character code
  std::vector<sf::Vertex> m_vertices;           // the run being drawn; capacity kept
  std::size_t m_drawn;                          // 0: characters of the frame drawn
  std::vector<Console::Char> m_first_run;       // the last frame's first run
  std::unique_ptr<sf::RenderTexture> m_p_kept;  // null: the picture of m_first_run
  bool m_kept;                                  // false: m_p_kept holds m_first_run
  bool m_keeping_failed;                        // false: no texture could be made
};

}  // namespace qv

#endif
