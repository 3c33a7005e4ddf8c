// SPDX-License-Identifier: MIT
#include "support/Desktop.hpp"

#include <csignal>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace vek::test {

namespace {

constexpr auto panelSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

std::string numbered(int number) {
  return std::to_string(number);
}

}  // namespace

bool eventually(std::function<bool()> const& isTrue, std::chrono::milliseconds limit) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  while (!isTrue()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

Desktop::Desktop() {
  server_ = start({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-screen", "0",
                   numbered(width) + "x" + numbered(height) + "x24"});
  auto const display = server_->readLine();
  if (!display) throw std::runtime_error("the display did not come up");
  auto const provider = folder_ / "Auth0.plist";
  std::ofstream(provider) << "<plist><dict><key>ClientId</key><string>vek</string>"
                             "<key>Domain</key><string>localhost:1</string></dict></plist>";
  std::ofstream(folder_ / "deployment.json")
      << R"({"backendURL": "https://localhost:1", "recogniserURL": "wss://localhost:1", )"
      << R"("authConfiguration": ")" << provider.string() << "\"}";
  for (auto const* name : {"config", "data", "cache", "run"}) {
    std::filesystem::create_directory(folder_ / name);
  }
  std::filesystem::permissions(folder_ / "run", std::filesystem::perms::owner_all);
  environment = {{"DISPLAY", ":" + *display},
                 {"DBUS_SESSION_BUS_ADDRESS", bus_->address()},
                 {"XDG_CONFIG_HOME", (folder_ / "config").string()},
                 {"XDG_DATA_HOME", (folder_ / "data").string()},
                 {"XDG_CACHE_HOME", (folder_ / "cache").string()},
                 {"XDG_RUNTIME_DIR", (folder_ / "run").string()},
                 {"PULSE_SERVER", "unix:" + (folder_ / "no-sound-server").string()},
                 {"VEK_DEPLOYMENT_FILE", (folder_ / "deployment.json").string()},
                 {"NO_AT_BRIDGE", "1"}};
  startWindowManager();
}

Desktop::~Desktop() {
  endDisplay();
}

void Desktop::endDisplay() {
  if (!server_) return;
  // Gently, so that no lock of its display is left behind.
  server_->signal(SIGTERM);
  static_cast<void>(server_->wait());
  server_.reset();
}

void Desktop::startWindowManager() {
  windowManager_ = start({"openbox"});
  bool const isUp = eventually([this] {
    return run({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
           std::string::npos;
  });
  if (!isUp) throw std::runtime_error("the window manager did not come up");
}

void Desktop::startPanel() {
  auto const folder = folder_ / "config" / "xfce4" / "xfconf" / "xfce-perchannel-xml";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "xfce4-panel.xml") << panelSettings;
  settings_ = start({"sh", "-c", "exec /usr/lib/*/xfce4/xfconf/xfconfd"});
  panel_ = start({"xfce4-panel", "--disable-wm-check"});
  bool const isHost = eventually([this] { return hostState().find("true") != std::string::npos; });
  if (!isHost) throw std::runtime_error("the panel did not come up");
}

std::string Desktop::hostState() const {
  return run({"dbus-send", "--session", "--print-reply=literal",
              "--dest=org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
              "org.freedesktop.DBus.Properties.Get", "string:org.kde.StatusNotifierWatcher",
              "string:IsStatusNotifierHostRegistered"});
}

void Desktop::settle() const {
  // A ping would be answered beside its main loop.
  auto const hasAnswered = [this] {
    return !run({"gdbus", "introspect", "--session", "-d", "com.vek.app", "-o", "/com/vek/app"})
                .empty();
  };
  bool const isUp = eventually(hasAnswered);
  // What vek has asked the panel is answered before this, and what it does then before the next.
  static_cast<void>(hostState());
  static_cast<void>(hasAnswered());
  // Windows come up in the order in which they were asked for.
  auto const last = start({"xmessage", "-title", "settled", "text"});
  if (!isUp || !eventually([&] { return window("settled").has_value(); })) {
    throw std::runtime_error("the desktop did not settle");
  }
}

std::unique_ptr<ChildProcess> Desktop::start(std::vector<std::string> words,
                                             std::filesystem::path const& errors) const {
  std::vector<std::string> all = {"env", "-u", "WAYLAND_DISPLAY", "-u", "VEK_LOG"};
  for (auto const& [name, value] : environment) all.push_back(name + "=" + value);
  all.insert(all.end(), std::make_move_iterator(words.begin()),
             std::make_move_iterator(words.end()));
  return std::make_unique<ChildProcess>(std::move(all), errors);
}

std::unique_ptr<ChildProcess> Desktop::startVek(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), VEK_PROGRAM);
  return start(std::move(arguments), folder_ / "log");
}

std::string Desktop::run(std::vector<std::string> words) const {
  auto const process = start(std::move(words));
  std::string output;
  while (auto const line = process->readLine()) output += *line + "\n";
  return output;
}

std::string Desktop::log() const {
  std::ifstream file(folder_ / "log");
  return {std::istreambuf_iterator<char>(file), {}};
}

std::optional<std::string> Desktop::window(std::string const& title) const {
  auto const found = run({"xdotool", "search", "--onlyvisible", "--name", "^" + title + "$"});
  if (found.empty()) return {};
  return found.substr(0, found.find('\n'));
}

std::string Desktop::activeWindow() const {
  auto const found = run({"xdotool", "getactivewindow"});
  return found.substr(0, found.find('\n'));
}

void Desktop::activate(std::string const& window) const {
  bool const isActive = eventually([&] {
    static_cast<void>(run({"xdotool", "windowactivate", window}));
    return activeWindow() == window;
  });
  if (!isActive) throw std::runtime_error("the window did not come forward");
}

std::string Desktop::topWindow() const {
  auto const stack = run({"xprop", "-root", "_NET_CLIENT_LIST_STACKING"});
  return std::to_string(std::stoul(stack.substr(stack.rfind("0x")), nullptr, 16));
}

bool Desktop::isInTaskbar(std::string const& window) const {
  auto const states = run({"xprop", "-id", window, "_NET_WM_STATE"});
  return states.find("SKIP_TASKBAR") == std::string::npos &&
         states.find("SKIP_PAGER") == std::string::npos;
}

std::string Desktop::colour(Point place) const {
  auto const area = "1x1+" + numbered(place.x) + "+" + numbered(place.y);
  auto colour =
      run({"import", "-window", "root", "-crop", area, "-format", "%[pixel:p{0,0}]\n", "info:"});
  if (colour.empty()) throw std::runtime_error("the screen cannot be read");
  return colour;
}

Point Desktop::position(std::string const& window) const {
  std::istringstream lines(run({"xdotool", "getwindowgeometry", "--shell", window}));
  Point position;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("X=")) position.x = std::stoi(line.substr(2));
    if (line.starts_with("Y=")) position.y = std::stoi(line.substr(2));
  }
  return position;
}

void Desktop::move(std::string const& window, Point position) const {
  static_cast<void>(
      run({"xdotool", "windowmove", window, numbered(position.x), numbered(position.y)}));
}

void Desktop::click(Point place) const {
  static_cast<void>(
      run({"xdotool", "mousemove", numbered(place.x), numbered(place.y), "click", "1"}));
}

std::optional<Point> Desktop::statusItem() const {
  // What is left of the panel without its ground is the icon. Its lowest lines are an edge.
  std::istringstream box(run({"import", "-window", "root", "-crop",
                              numbered(width) + "x" + numbered(panelHeight - 2) + "+0+0", "+repage",
                              "-trim", "-format", "%w %h %X %Y\n", "info:"}));
  Point size;
  Point corner;
  box >> size.x >> size.y >> corner.x >> corner.y;
  bool const isIcon = box && corner.x >= 0 && size.x <= panelHeight;
  if (!isIcon) return {};
  return Point{corner.x + size.x / 2, corner.y + size.y / 2};
}

}  // namespace vek::test
