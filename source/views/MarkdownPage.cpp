// SPDX-License-Identifier: MIT
#include "views/MarkdownPage.hpp"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>

#include "markdown/BlockSequence.hpp"
#include "markdown/PlainTextBlocks.hpp"
#include "views/Fonts.hpp"
#include "views/ImageLoader.hpp"
#include "views/LinkPolicy.hpp"

namespace vek {

namespace {

/// How long the rest of a document is measured without a look at what the user does.
constexpr std::chrono::milliseconds slice(8);
/// Leaves the first frame its time, and those after it.
constexpr std::chrono::milliseconds betweenSlices(16);

double markerWidth(Drawable const& marker) {
  return QFontMetricsF(fontOf(marker.text.font))
      .horizontalAdvance(QString::fromStdString(marker.label));
}

/// Of the line around a link that has the focus.
constexpr qreal focusWidth = 2;
constexpr qreal focusRadius = 4;

}  // namespace

MarkdownPage::MarkdownPage(QQuickItem* parent)
    : QQuickPaintedItem(parent), images_(ImageLoader::shared()) {
  setFillColor(Qt::transparent);
  setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
  setAcceptHoverEvents(true);
  setFlag(ItemIsFocusScope, false);
  setActiveFocusOnTab(true);
  environment_.markerWidth = markerWidth;
  imageProvider_ = inlineImageProvider_ = [this](QUrl const& url) { return images_.image(url); };
  layout_.setImages([this](auto const& image, auto place) { return shownImage(image, place); });
  connect(&images_, &DocumentImages::changed, this, &MarkdownPage::imageCame);
  connect(this, &MarkdownPage::baseURLChanged, this, &MarkdownPage::imagesChanged);
  connect(this, &MarkdownPage::baseURLChanged, this, &MarkdownPage::forgetLinks);
  measuring_.setInterval(betweenSlices);
  connect(&measuring_, &QTimer::timeout, this, [this] {
    layout_.measureUntil(DocumentLayout::Clock::now() + slice);
    measured();
  });
}

void MarkdownPage::setContent(QString const& content) {
  if (content == content_) return;
  content_ = content;
  if (isComponentComplete()) makeDocument();
  Q_EMIT contentChanged();
}

void MarkdownPage::setIsPlain(bool isPlain) {
  if (std::exchange(isPlain_, isPlain) == isPlain) return;
  if (isComponentComplete()) makeDocument();
  Q_EMIT contentChanged();
}

void MarkdownPage::setEnvironment(MarkdownEnvironment environment) {
  environment_ = std::move(environment);
  if (isComponentComplete()) makeDocument();
  Q_EMIT environmentChanged();
}

void MarkdownPage::setImageProvider(ImageSource imageProvider) {
  imageProvider_ = std::move(imageProvider);
  imagesChanged();
}

void MarkdownPage::setInlineImageProvider(ImageSource inlineImageProvider) {
  inlineImageProvider_ = std::move(inlineImageProvider);
  imagesChanged();
}

void MarkdownPage::imagesChanged() {
  layout_.imagesChanged([](RawImageData const&) { return true; });
  polish();
}

void MarkdownPage::imageCame(QUrl const& url) {
  layout_.imagesChanged([&](RawImageData const& image) {
    return urlOf(image).adjusted(QUrl::RemoveFragment) == url;
  });
  polish();
}

void MarkdownPage::setColors(QVariantMap const& colors) {
  if (colors == colors_) return;
  colors_ = colors;
  layout_.setColors(MarkdownColors::from(colors));
  auto const scheme =
      colors.value(QStringLiteral("isDark")).toBool() ? ColorScheme::dark : ColorScheme::light;
  bool const isOther = std::exchange(environment_.colorScheme, scheme) != scheme;
  bool const hasOtherImages = isOther && content_.contains(u"-mode-only");
  if (hasOtherImages && isComponentComplete()) makeDocument();
  polish();
  Q_EMIT colorsChanged();
  update();
}

void MarkdownPage::setScroll(qreal scroll) {
  if (std::exchange(scroll_, scroll) == scroll) return;
  Q_EMIT scrollChanged();
  polish();
  update();
}

void MarkdownPage::setViewHeight(qreal height) {
  if (std::exchange(viewHeight_, height) == height) return;
  Q_EMIT viewHeightChanged();
  polish();
}

void MarkdownPage::componentComplete() {
  QQuickPaintedItem::componentComplete();
  makeDocument();
}

void MarkdownPage::makeDocument() {
  auto const text = content_.toStdString();
  images_.clear();
  bool const wasRead = std::exchange(accessibleDocument_, nullptr) != nullptr;
  layout_.setBlocks(isPlain_ ? plainTextBlocks(text)
                             : BlockSequence::of(MarkdownContent(text), environment_));
  forgetLinks();
  setSelection(0, 0);
  find();
  polish();
  Q_EMIT documentChanged();
  if (!wasRead) return;
  QAccessibleEvent change(this, QAccessible::ObjectReorder);
  QAccessible::updateAccessibility(&change);
}

QUrl MarkdownPage::urlOf(RawImageData const& image) const {
  return imageBaseURL_.resolved(QUrl(QString::fromStdString(image.source)));
}

AccessibleDocument& MarkdownPage::accessibleDocument() {
  if (!accessibleDocument_) accessibleDocument_ = std::make_unique<AccessibleDocument>(*this);
  return *accessibleDocument_;
}

ShownImage MarkdownPage::shownImage(RawImageData const& image, ImagePlace place) {
  auto const& provider = place == ImagePlace::block ? imageProvider_ : inlineImageProvider_;
  return {.image = provider(urlOf(image))};
}

void MarkdownPage::geometryChange(QRectF const& now, QRectF const& before) {
  QQuickPaintedItem::geometryChange(now, before);
  polish();
}

void MarkdownPage::updatePolish() {
  if (width() <= 0) return;
  layout_.setWidth(width());
  layout_.measureTo(scroll_ + viewHeight_);
  measured();
  update();
}

void MarkdownPage::measured() {
  if (layout_.isComplete()) {
    measuring_.stop();
  } else if (!measuring_.isActive()) {
    measuring_.start();
  }
  if (std::exchange(documentHeight_, layout_.height()) != documentHeight_)
    Q_EMIT documentHeightChanged();
}

QString MarkdownPage::plainText() const {
  return layout_.textToCopy(0, layout_.text().size());
}

QString MarkdownPage::selectedText() const {
  auto const [from, to] = selection();
  return layout_.textToCopy(from, to);
}

MarkdownPage::Range MarkdownPage::selection() const {
  return std::minmax(anchor_, cursor_);
}

void MarkdownPage::setSelection(qsizetype anchor, qsizetype cursor) {
  if (anchor == anchor_ && cursor == cursor_) return;
  anchor_ = anchor;
  cursor_ = cursor;
  Q_EMIT selectionChanged();
  update();
}

void MarkdownPage::selectAll() {
  setSelection(0, layout_.text().size());
}

void MarkdownPage::deselect() {
  setSelection(cursor_, cursor_);
}

void MarkdownPage::copy() const {
  if (anchor_ != cursor_) QGuiApplication::clipboard()->setText(selectedText());
}

QRectF MarkdownPage::rectOf(QString const& text) {
  auto const from = layout_.text().indexOf(text);
  if (from < 0) return {};
  auto const rects = layout_.rectsOf(from, from + text.size());
  return rects.empty() ? QRectF() : rects.front();
}

void MarkdownPage::setSearched(QString const& searched) {
  if (searched == searched_) return;
  searched_ = searched;
  foundIndex_ = -1;
  find();
}

void MarkdownPage::setFoundIndex(int index) {
  if (index == foundIndex_ || index < -1 || index >= foundCount()) return;
  foundIndex_ = index;
  Q_EMIT foundChanged();
  showFound();
}

void MarkdownPage::find() {
  found_.clear();
  auto const& text = layout_.text();
  auto const length = searched_.size();
  for (auto at = length > 0 ? text.indexOf(searched_, 0, Qt::CaseInsensitive) : -1; at >= 0;
       at = text.indexOf(searched_, at + length, Qt::CaseInsensitive))
    found_.emplace_back(at, at + length);
  foundIndex_ = std::min(foundIndex_, foundCount() - 1);
  Q_EMIT foundChanged();
  update();
}

void MarkdownPage::showFound() {
  update();
  if (foundIndex_ < 0) return;
  auto const [from, to] = found_[static_cast<std::size_t>(foundIndex_)];
  reveal(from, to);
}

void MarkdownPage::reveal(qsizetype from, qsizetype to) {
  layout_.reveal(from, to);
  auto const rects = layout_.rectsOf(from, to);
  measured();
  if (!rects.empty()) Q_EMIT revealRequested(rects[0].y(), rects[0].height());
}

void MarkdownPage::follow(std::string const& destination) {
  auto const url = allowedLink(baseURL_, QString::fromStdString(destination));
  if (url.isValid()) Q_EMIT linkActivated(url);
}

void MarkdownPage::paint(QPainter* painter) {
  auto const& colors = layout_.colors();
  std::vector<Highlight> highlights;
  auto const [first, last] = layout_.textBetween(scroll_, scroll_ + height());
  for (auto found = std::ranges::lower_bound(found_, first, {}, &Range::first);
       found != found_.end() && found->first < last; ++found) {
    bool const isPresent = found - found_.begin() == foundIndex_;
    highlights.push_back(
        {found->first, found->second, isPresent ? colors.foundNow : colors.found, colors.primary});
  }
  if (anchor_ != cursor_) {
    auto const [from, to] = selection();
    highlights.push_back({from, to, colors.selection, colors.primary});
  }
  layout_.draw(*painter, scroll_, scroll_ + height(), highlights);
  if (auto const* link = focusedLink_.present()) {
    painter->setPen(QPen(colors.link, focusWidth));
    painter->setBrush(Qt::NoBrush);
    for (auto const& rect : layout_.rectsOf(link->from, link->to)) {
      painter->drawRoundedRect(rect.adjusted(-focusWidth, 0, focusWidth, 0), focusRadius,
                               focusRadius);
    }
  }
}

}  // namespace vek
