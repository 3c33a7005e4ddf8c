// SPDX-License-Identifier: MIT
// Documents laid out and drawn at any width: each position has its place, and what is measured
// piece by piece stands where it does when measured at once.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <string>
#include <string_view>
#include <vector>

#include "FuzzInput.hpp"
#include "markdown/BlockSequence.hpp"
#include "markdown/PlainTextBlocks.hpp"
#include "views/DocumentLayout.hpp"

namespace {

using namespace vek;

constexpr qreal all = 1e9;
constexpr std::size_t longestText = 6000;

/// Without a screen.
void startQt() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static char name[] = "fuzz";                            // NOLINT(modernize-avoid-c-arrays)
  static char* arguments[] = {static_cast<char*>(name)};  // NOLINT(modernize-avoid-c-arrays)
  static int count = 1;
  static auto const& application = *new QGuiApplication(count, static_cast<char**>(arguments));
  static_cast<void>(application);
}

/// Bytes of the input that say how the rest is shown.
struct Manner {
  int width = 1;
  int repeats = 1;
  bool isPlain = false;
  /// Which of the images are there, and how wide.
  unsigned images = 0;
};

Manner takeManner(std::string_view& input) {
  auto const take = [&] {
    auto const byte = input.empty() ? 0U : static_cast<unsigned char>(input.front());
    input.remove_prefix(input.empty() ? 0 : 1);
    return byte;
  };
  Manner manner;
  manner.width = static_cast<int>(take() * 4 + 1);
  auto const flags = take();
  manner.isPlain = flags % 8 == 0;
  manner.repeats = flags % 3 == 0 ? 100 : 1;
  manner.images = take();
  return manner;
}

ShownImage shownImage(RawImageData const& image, unsigned manner) {
  bool const isThere = (image.source.size() + manner) % 3 > 0;
  if (!isThere) return {};
  return {QImage(static_cast<int>(manner) * 3 + 1, 40, QImage::Format_RGB32)};
}

void draw(DocumentLayout& layout, QSize size, qreal top) {
  QImage page(size, QImage::Format_RGB32);
  QPainter painter(&page);
  layout.draw(painter, top, top + size.height(),
              {{0, layout.text().size() / 2, Qt::red, Qt::black}});
}

void measureAgain(DocumentLayout& layout, int width) {
  layout.setWidth(width + 1);
  layout.setWidth(width);
  layout.measureTo(all);
}

std::vector<QRectF> places(DocumentLayout& layout) {
  std::vector<QRectF> found;
  auto const length = layout.text().size();
  for (qsizetype i = 0; i < length; i += 1 + length / 16)
    for (auto const& rect : layout.rectsOf(i, i + 1)) found.push_back(rect);
  return found;
}

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  startQt();
  auto input = test::text(data, size);
  auto const manner = takeManner(input);
  std::string text;
  for (int i = 0; i < manner.repeats && text.size() < longestText; ++i) text += input;

  DocumentLayout layout;
  auto images = manner.images;
  layout.setImages([&](auto const& image, auto) { return shownImage(image, images); });
  layout.setWidth(manner.width);
  layout.setBlocks(manner.isPlain ? plainTextBlocks(text)
                                  : BlockSequence::of(MarkdownContent(text), {}));
  QSize const view(manner.width, 200);
  draw(layout, view, 0);
  layout.measureTo(all);
  test::expect(layout.isComplete());
  // The first use of a font that stands in for another can give a line another height.
  measureAgain(layout, manner.width);
  draw(layout, view, layout.height() / 2);

  ++images;
  layout.imagesChanged([](auto const&) { return true; });
  auto const moved = places(layout);
  auto const height = layout.height();
  for (auto const& rect : moved) {
    test::expect(rect.top() >= 0 && rect.bottom() <= height + 1);
    auto const position = layout.positionAt(rect.center());
    test::expect(position >= 0 && position <= layout.text().size());
    static_cast<void>(layout.linkAt(rect.center()));
  }
  measureAgain(layout, manner.width);
  test::expect(layout.height() == height);
  test::expect(places(layout) == moved);
  static_cast<void>(layout.textToCopy(0, layout.text().size()));
  return 0;
}
