// SPDX-License-Identifier: MIT
#include "views/SymbolPath.hpp"

#include <QFile>
#include <QLineF>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vek {

namespace {

constexpr double fullCircle = 360;

/// Adds what the commands of an SVG path draw.
class Pen {
 public:
  Pen(QPainterPath& path, std::string_view commands) : path_(path), rest_(commands) {}

  void draw() {
    for (skipSpace(); !rest_.empty(); skipSpace()) {
      if (std::isalpha(static_cast<unsigned char>(rest_.front()))) {
        command_ = rest_.front();
        rest_.remove_prefix(1);
      }
      step();
    }
  }

 private:
  void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" ,\n"), rest_.size())); }

  double number() {
    skipSpace();
    double value = 0;
    auto const* const begin = rest_.data();
    auto const* const end = begin + rest_.size();
    auto const read = std::from_chars(begin, end, value);
    Q_ASSERT(read.ec == std::errc());
    rest_ = {read.ptr, end};
    return value;
  }

  QPointF point(QPointF origin) {
    auto const x = number();
    return origin + QPointF(x, number());
  }

  void step() {
    QPointF const origin = std::islower(command_) ? at_ : QPointF();
    switch (std::toupper(command_)) {
      case 'M':
        at_ = start_ = point(origin);
        path_.moveTo(at_);
        command_ = std::islower(command_) ? 'l' : 'L';
        break;
      case 'L':
        lineTo(point(origin));
        break;
      case 'H':
        lineTo({origin.x() + number(), at_.y()});
        break;
      case 'V':
        lineTo({at_.x(), origin.y() + number()});
        break;
      case 'C': {
        auto const first = point(origin);
        curveTo(first, origin);
        break;
      }
      case 'S':
        curveTo(2 * at_ - control_, origin);
        break;
      case 'A':
        arcTo(origin);
        break;
      case 'Z':
        path_.closeSubpath();
        at_ = start_;
        path_.moveTo(at_);
        break;
      default:
        qFatal("A symbol has a command that is not known.");
    }
  }

  void lineTo(QPointF end) { path_.lineTo(at_ = end); }

  void curveTo(QPointF first, QPointF origin) {
    control_ = point(origin);
    at_ = point(origin);
    path_.cubicTo(first, control_, at_);
  }

  void arcTo(QPointF origin) {
    auto const givenRadius = number();
    number();  // the other radius, of a circle the same
    number();  // the angle between them
    bool const isLarge = number() != 0;
    bool const isClockwise = number() != 0;
    QLineF const chord(at_, point(origin));
    at_ = chord.p2();
    auto const radius = std::max(givenRadius, chord.length() / 2);
    auto const height = std::sqrt(radius * radius - chord.length() * chord.length() / 4);
    auto toCentre = chord.normalVector().unitVector();
    toCentre.translate(chord.center() - chord.p1());
    toCentre.setLength(isLarge == isClockwise ? height : -height);
    auto const centre = toCentre.p2();
    auto const begin = QLineF(centre, chord.p1()).angle();
    auto sweep = QLineF(centre, chord.p2()).angle() - begin;
    if (isClockwise && sweep > 0) sweep -= fullCircle;
    if (!isClockwise && sweep < 0) sweep += fullCircle;
    path_.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), begin,
                sweep);
  }

  QPainterPath& path_;
  std::string_view rest_;
  char command_ = 'M';
  QPointF start_;
  QPointF at_;
  /// The last one of the curve before.
  QPointF control_;
};

}  // namespace

QPainterPath symbolPath(QString const& file) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly)) qFatal("There is no %s.", qUtf8Printable(file));
  auto const text = source.readAll();
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  constexpr std::string_view key = " d=\"";
  std::string_view rest(text.data(), static_cast<std::size_t>(text.size()));
  for (auto found = rest.find(key); found != rest.npos; found = rest.find(key)) {
    rest.remove_prefix(found + key.size());
    Pen(path, rest.substr(0, rest.find('"'))).draw();
  }
  return path;
}

}  // namespace vek
