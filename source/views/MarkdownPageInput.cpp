// SPDX-License-Identifier: MIT
// What a page makes of the mouse and the keyboard.
#include <QCursor>
#include <QTextBoundaryFinder>

#include <cstdlib>
#include <utility>

#include "views/LinkPolicy.hpp"
#include "views/MarkdownPage.hpp"

namespace vek {

namespace {

bool isReturn(QKeyEvent const& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

void MarkdownPage::mousePressEvent(QMouseEvent* event) {
  forceActiveFocus(Qt::MouseFocusReason);
  focusedLink_.leave();
  setIsRinged(false);
  setHoveredLink(linkUnder(event->position()));
  update();
  if (event->button() == Qt::RightButton) {
    Q_EMIT menuRequested(event->position().x(), event->position().y());
    return;
  }
  // Or the list around would take the movement for its own.
  setKeepMouseGrab(true);
  auto const point = inDocument(event->position());
  pressedLink_ = QString::fromStdString(layout_.linkAt(point).value_or(""));
  auto const position = layout_.positionAt(point);
  setSelection(event->modifiers().testFlag(Qt::ShiftModifier) ? anchor_ : position, position);
}

void MarkdownPage::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) return;
  auto const point = inDocument(event->position());
  setSelection(anchor_, layout_.positionAt(point));
  bool const isOutside = event->position().y() < 0 || event->position().y() > height();
  if (isOutside) Q_EMIT revealRequested(point.y(), 1);
}

void MarkdownPage::mouseReleaseEvent(QMouseEvent* event) {
  setKeepMouseGrab(false);
  bool const isClick = event->button() == Qt::LeftButton && anchor_ == cursor_;
  auto const link = layout_.linkAt(inDocument(event->position()));
  if (!isClick || !link || pressedLink_ != QString::fromStdString(*link)) return;
  follow(*link);
}

void MarkdownPage::mouseDoubleClickEvent(QMouseEvent* event) {
  auto const position = layout_.positionAt(inDocument(event->position()));
  QTextBoundaryFinder words(QTextBoundaryFinder::Word, layout_.text());
  words.setPosition(position);
  if (!words.isAtBoundary()) words.toPreviousBoundary();
  auto const from = words.position();
  words.toNextBoundary();
  setSelection(from, words.position());
}

void MarkdownPage::hoverMoveEvent(QHoverEvent* event) {
  auto const url = linkUnder(event->position());
  setHoveredLink(url);
  setCursor(url.isValid() ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

void MarkdownPage::hoverLeaveEvent(QHoverEvent* /*event*/) {
  setHoveredLink({});
}

QUrl MarkdownPage::linkUnder(QPointF point) {
  auto const link = layout_.linkAt(inDocument(point));
  return link ? allowedLink(baseURL_, QString::fromStdString(*link)) : QUrl();
}

void MarkdownPage::setHoveredLink(QUrl const& url) {
  auto const* focused = focusedLink_.present();
  auto const link = (focused && !url.isValid() ? focused->url : url).toString();
  if (link == hoveredLink_) return;
  hoveredLink_ = link;
  Q_EMIT hoveredLinkChanged();
}

void MarkdownPage::setIsRinged(bool isRinged) {
  if (std::exchange(isRinged_, isRinged) != isRinged) Q_EMIT isRingedChanged();
}

void MarkdownPage::forgetLinks() {
  if (focusedLink_.present()) setIsRinged(true);
  focusedLink_.forget();
  setHoveredLink({});
  update();
}

void MarkdownPage::wheelEvent(QWheelEvent* event) {
  bool const isTurned = event->modifiers().testFlag(Qt::ShiftModifier);
  auto const delta = event->pixelDelta().isNull() ? event->angleDelta() / 2 : event->pixelDelta();
  auto const by = isTurned && delta.x() == 0 ? -delta.y() : -delta.x();
  bool const isSideways = by != 0 && (isTurned || std::abs(delta.x()) > std::abs(delta.y()));
  bool const moves = isSideways && layout_.moveSideways(inDocument(event->position()), by);
  event->setAccepted(moves);
  if (moves) update();
}

void MarkdownPage::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copy();
  } else if (event->matches(QKeySequence::SelectAll)) {
    selectAll();
  } else if (event->key() == Qt::Key_Tab) {
    event->setAccepted(moveToLink(FocusedLink::Step::next));
  } else if (event->key() == Qt::Key_Backtab) {
    event->setAccepted(moveToLink(FocusedLink::Step::previous));
  } else if (auto const* link = focusedLink_.present(); link && isReturn(*event)) {
    Q_EMIT linkActivated(link->url);
  } else {
    QQuickPaintedItem::keyPressEvent(event);
  }
}

void MarkdownPage::focusInEvent(QFocusEvent* event) {
  QQuickPaintedItem::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason) moveToLink(FocusedLink::Step::next);
  if (event->reason() == Qt::BacktabFocusReason) moveToLink(FocusedLink::Step::previous);
}

void MarkdownPage::focusOutEvent(QFocusEvent* event) {
  QQuickPaintedItem::focusOutEvent(event);
  setIsRinged(false);
  if (!focusedLink_.present()) return;
  focusedLink_.leave();
  setHoveredLink({});
  update();
}

bool MarkdownPage::moveToLink(FocusedLink::Step step) {
  focusedLink_.move(layout_, baseURL_, step);
  setHoveredLink({});
  update();
  auto const* link = focusedLink_.present();
  setIsRinged(!link);
  if (link) reveal(link->from, link->to);
  // After the page itself has told of its focus.
  if (link && QAccessible::isActive())
    QMetaObject::invokeMethod(this, &MarkdownPage::tellOfFocus, Qt::QueuedConnection);
  return link != nullptr;
}

void MarkdownPage::tellOfFocus() {
  auto const* link = focusedLink_.present();
  if (!link) return;
  QAccessibleEvent focus(accessibleDocument().interfaceOf(link->node), QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

}  // namespace vek
