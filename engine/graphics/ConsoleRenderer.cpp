#include "graphics/ConsoleRenderer.h"

#include <SFML/Graphics.hpp>
#include <cmath>
#include <locale>
#include <new>

namespace qv {

namespace {

using Quad = ConsoleRenderer::Quad;

// Where sf::Transformable puts a point of a figure placed at (x, y) and
// turned by angle degrees about that point, computed as it computes it.
class Placement {
 public:
  Placement(float x, float y, float angle) : m_x(x), m_y(y), m_cos(1), m_sin(0), m_turned(false) {
    const float rotation = static_cast<float>(std::fmod(angle, 360));
    if (rotation == 0) return;  // the common case: a plain shift, exactly
    const float radians = -(rotation < 0 ? rotation + 360.f : rotation) * 3.141592654f / 180.f;
    m_cos = static_cast<float>(std::cos(radians));
    m_sin = static_cast<float>(std::sin(radians));
    m_turned = true;
  }

  sf::Vector2f operator()(float x, float y) const {
    if (!m_turned) return sf::Vector2f(m_x + x, m_y + y);
    return sf::Vector2f(m_cos * x + m_sin * y + m_x, -m_sin * x + m_cos * y + m_y);
  }

 private:
  float m_x, m_y;      // the figure's position
  float m_cos, m_sin;  // of the turn, as SFML takes them (clockwise on screen)
  bool m_turned;       // false: a plain shift
};

// Appends the two triangles of a quad on screen and in the texture, in the
// corner order sf::Text uses.
void addQuad(std::vector<sf::Vertex> &vertices, const Placement &at, const Quad &quad,
             const Quad &tex, sf::Color color) {
  vertices.emplace_back(at(quad.left, quad.top), color, sf::Vector2f(tex.left, tex.top));
  vertices.emplace_back(at(quad.right, quad.top), color, sf::Vector2f(tex.right, tex.top));
  vertices.emplace_back(at(quad.left, quad.bottom), color, sf::Vector2f(tex.left, tex.bottom));
  vertices.emplace_back(at(quad.left, quad.bottom), color, sf::Vector2f(tex.left, tex.bottom));
  vertices.emplace_back(at(quad.right, quad.top), color, sf::Vector2f(tex.right, tex.top));
  vertices.emplace_back(at(quad.right, quad.bottom), color, sf::Vector2f(tex.right, tex.bottom));
}

// SFML reserves an opaque white 2 x 2 square at the top-left of every glyph
// texture (for underlines); sampling its middle gives exactly the colour.
const Quad WHITE_TEXEL{1, 1, 1, 1};

// sf::Text widens each glyph quad by one pixel all round, on screen and in
// the texture, so smoothing reaches the glyph's edges.
const float GLYPH_PADDING = 1;

}  // namespace

ConsoleRenderer::ConsoleRenderer()
    : m_p_font(nullptr),
      m_character_size(0),
      m_background(sf::Color::Black),
      m_cell_width(0),
      m_cell_height(0),
      m_glyphs(),
      m_drawn(0),
      m_kept(false),
      m_keeping_failed(false) {
}

ConsoleRenderer::~ConsoleRenderer() = default;

void ConsoleRenderer::start(const sf::Font &font, unsigned int character_size,
                            sf::Color background) {
  m_p_font = &font;
  m_character_size = character_size;
  m_background = background;
  m_glyphs.fill(GlyphQuad{});
  m_drawn = 0;
  m_keeping_failed = false;
  forgetKept();
}

void ConsoleRenderer::stop() {
  m_p_font = nullptr;
  m_p_kept.reset();
  forgetKept();
}

void ConsoleRenderer::setCellSize(float width, float height) {
  m_cell_width = width;
  m_cell_height = height;
  forgetKept();
}

bool ConsoleRenderer::hasUndrawn(const Console &console) const {
  return m_p_font != nullptr && m_drawn < console.frame().size();
}

void ConsoleRenderer::draw(const Console &console, sf::RenderTarget &target) {
  if (!hasUndrawn(console)) return;
  const std::vector<Console::Char> &frame = console.frame();
  const bool first_run = m_drawn == 0;
  const bool repeated = first_run && frame == m_first_run;
  if (first_run && !repeated) {
    m_first_run = frame;  // reuses the capacity
    m_kept = false;
  }
  if (repeated && m_kept) {
    showKept(target);
    m_drawn = frame.size();
    return;
  }

  m_vertices.clear();
  for (std::size_t i = m_drawn; i < frame.size(); i++) addCharacter(frame[i]);
  m_drawn = frame.size();
  if (repeated && keep(target))
    showKept(target);
  else
    drawVertices(target);
}

void ConsoleRenderer::startFrame() {
  m_drawn = 0;
}

const ConsoleRenderer::GlyphQuad &ConsoleRenderer::glyph(char ch) {
  GlyphQuad &quad = m_glyphs[static_cast<unsigned char>(ch)];
  if (quad.loaded) return quad;
  quad.loaded = true;
  // The character as sf::Text gets it: widened with the default locale.
  const sf::Uint32 code = sf::String(ch, std::locale())[0];
  quad.visible = code != '\r' && code != ' ' && code != '\n' && code != '\t';
  if (!quad.visible) return quad;
  const sf::Glyph &g = m_p_font->getGlyph(code, m_character_size, true);
  // sf::Text puts the baseline one character size below the position.
  const float baseline = static_cast<float>(m_character_size);
  const float left = g.bounds.left - GLYPH_PADDING;
  const float top = g.bounds.top - GLYPH_PADDING;
  const float right = g.bounds.left + g.bounds.width + GLYPH_PADDING;
  const float bottom = g.bounds.top + g.bounds.height + GLYPH_PADDING;
  quad.bounds = Quad{left, baseline + top, right, baseline + bottom};
  const float u1 = static_cast<float>(g.textureRect.left) - GLYPH_PADDING;
  const float v1 = static_cast<float>(g.textureRect.top) - GLYPH_PADDING;
  const float u2 = static_cast<float>(g.textureRect.left + g.textureRect.width) + GLYPH_PADDING;
  const float v2 = static_cast<float>(g.textureRect.top + g.textureRect.height) + GLYPH_PADDING;
  quad.texture = Quad{u1, v1, u2, v2};
  return quad;
}

void ConsoleRenderer::addCharacter(const Console::Char &c) {
  // The cell rectangle sits a tenth of a cell left of and a fifth of a cell
  // below the glyph's position, and blanks the cell under the glyph.
  const Placement cell(c.x - m_cell_width / 10, c.y + m_cell_height / 5, c.angle);
  addQuad(m_vertices, cell, Quad{0, 0, m_cell_width, m_cell_height}, WHITE_TEXEL, m_background);
  const GlyphQuad &quad = glyph(c.ch);
  if (!quad.visible) return;
  addQuad(m_vertices, Placement(c.x, c.y, c.angle), quad.bounds, quad.texture,
          sf::Color(c.r, c.g, c.b, 255));
}

void ConsoleRenderer::drawVertices(sf::RenderTarget &target) const {
  target.draw(m_vertices.data(), m_vertices.size(), sf::Triangles,
              sf::RenderStates(&m_p_font->getTexture(m_character_size)));
}

bool ConsoleRenderer::keep(const sf::RenderTarget &target) {
  if (m_keeping_failed) return false;
  const sf::Vector2u size = target.getSize();
  if (!m_p_kept || m_p_kept->getSize() != size) {
    m_p_kept.reset(new (std::nothrow) sf::RenderTexture());
    if (!m_p_kept || !m_p_kept->create(size.x, size.y)) {
      m_p_kept.reset();
      m_keeping_failed = true;
      return false;
    }
  }
  // Drawn over transparent black with the usual alpha blending, each pixel
  // ends up as its colour times its coverage, with the coverage as alpha.
  m_p_kept->setView(target.getView());
  m_p_kept->clear(sf::Color::Transparent);
  drawVertices(*m_p_kept);
  m_p_kept->display();
  m_kept = true;
  return true;
}

void ConsoleRenderer::showKept(sf::RenderTarget &target) const {
  const sf::View view = target.getView();
  const sf::Vector2f size(target.getSize());
  target.setView(sf::View(sf::FloatRect(0, 0, size.x, size.y)));
  // Premultiplied colours: the window keeps (1 - coverage) of what it had.
  target.draw(sf::Sprite(m_p_kept->getTexture()),
              sf::RenderStates(sf::BlendMode(sf::BlendMode::One, sf::BlendMode::OneMinusSrcAlpha)));
  target.setView(view);
}

void ConsoleRenderer::forgetKept() {
  m_first_run.clear();
  m_kept = false;
}

}  // namespace qv
