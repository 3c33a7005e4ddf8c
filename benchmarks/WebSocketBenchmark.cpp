// SPDX-License-Identifier: MIT
// Streams 48 kHz stereo sample in messages of 4,096 bytes over TLS to a server that only takes
// them, in turn with a minimal Beast program that sends the same. First as fast as they go, for
// what a message costs; then at the pace of a microphone, for how long one waits.
//
//     WebSocketBenchmark [MESSAGES [SECONDS]]     of each of 5 rounds; exit status 1 when a bound
//     is
//                                                 not kept

#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <boost/asio/connect.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/ssl.hpp>
#include <boost/beast/websocket.hpp>
#include <boost/beast/websocket/ssl.hpp>
#include <chrono>
#include <csignal>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "platform/URLSessionWebSocketTask.hpp"
#include "support/WebSocketTestServer.hpp"

namespace vek {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 5;
constexpr double largestRatio = 1.3;
constexpr double largestLatency = 2;  // milliseconds
constexpr std::size_t messageSize = 4096;
/// 1,024 frames at 48 kHz.
constexpr std::chrono::nanoseconds period{21'333'333};

/// The server, in a process of its own so that its work is not counted.
class Sink {
 public:
  explicit Sink(test::TestAuthority const& authority) {
    int ends[2] = {};
    if (pipe(ends) != 0) throw std::runtime_error("There is no pipe.");
    process_ = fork();
    if (process_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      test::WebSocketTestServer const server(
          {[](test::WebSocketPeer& peer) { peer.upgrade(); }},
          {.identity = authority.localhost(), .keepsBinaryMessages = false});
      int const port = server.port();
      if (write(ends[1], &port, sizeof port) != sizeof port) _exit(1);
      while (true) pause();
    }
    if (read(ends[0], &port_, sizeof port_) != sizeof port_) {
      throw std::runtime_error("The server does not start.");
    }
    close(ends[0]);
    close(ends[1]);
  }
  Sink(Sink const&) = delete;
  Sink& operator=(Sink const&) = delete;
  ~Sink() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }

  [[nodiscard]] std::string port() const { return std::to_string(port_); }

 private:
  pid_t process_ = -1;
  int port_ = 0;
};

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Ours.
class Task {
 public:
  Task(test::TestAuthority const& authority, Sink const& sink)
      : task_(URLSession::make({.trustedAuthority = authority.authority()}, {})
                  ->webSocketTask({.url = "wss://localhost:" + sink.port()})) {
    task_->receive([](auto) {});
    task_->resume();
    sendAll(1);
  }

  /// Sends one after the other, each when the last has been written.
  void sendAll(int count) {
    auto const done = std::make_shared<std::promise<void>>();
    std::function<void()> const next = [&] {
      task_->send({WebSocketMessage::Kind::binary, std::string(messageSize, 's')},
                  [&, done](std::exception_ptr const& error) {
                    if (error || --count == 0) {
                      error ? done->set_exception(error) : done->set_value();
                    } else {
                      next();
                    }
                  });
    };
    next();
    done->get_future().get();
  }

  void send(std::function<void()> done) {
    task_->send({WebSocketMessage::Kind::binary, std::string(messageSize, 's')},
                [done = std::move(done)](std::exception_ptr const&) { done(); });
  }

 private:
  std::shared_ptr<URLSessionWebSocketTask> task_;
};

/// The minimal program: one thread, one message at a time, and a read that waits for results.
class Peer {
 public:
  Peer(test::TestAuthority const& authority, Sink const& sink) {
    context_.load_verify_file(authority.authority());
    socket_.next_layer().set_verify_mode(asio::ssl::verify_peer);
    asio::ip::tcp::resolver resolver(loop_);
    asio::connect(socket_.next_layer().next_layer(), resolver.resolve("localhost", sink.port()));
    socket_.next_layer().next_layer().set_option(asio::ip::tcp::no_delay(true));
    socket_.next_layer().handshake(asio::ssl::stream_base::client);
    socket_.handshake("localhost", "/");
    socket_.auto_fragment(false);
    socket_.write_buffer_bytes(64 << 10);
    socket_.binary(true);
    socket_.async_read(buffer_, [](auto, auto) {});
    thread_ = std::thread([this] {
      auto const work = asio::make_work_guard(loop_);
      loop_.run();
    });
  }
  Peer(Peer const&) = delete;
  Peer& operator=(Peer const&) = delete;
  ~Peer() {
    loop_.stop();
    thread_.join();
  }

  void sendAll(int count) {
    auto const done = std::make_shared<std::promise<void>>();
    std::function<void()> const next = [&] {
      message_.assign(messageSize, 's');
      socket_.async_write(asio::buffer(message_), [&, done](boost::system::error_code error, auto) {
        if (error || --count == 0) return done->set_value();
        next();
      });
    };
    asio::post(loop_, next);
    done->get_future().get();
  }

  void send(std::function<void()> done) {
    asio::post(loop_, [this, done = std::move(done)] {
      message_.assign(messageSize, 's');
      socket_.async_write(asio::buffer(message_), [done](auto, auto) { done(); });
    });
  }

 private:
  asio::io_context loop_{1};
  asio::ssl::context context_{asio::ssl::context::tls_client};
  beast::websocket::stream<beast::ssl_stream<asio::ip::tcp::socket>> socket_{loop_, context_};
  beast::flat_buffer buffer_;
  std::string message_;
  std::thread thread_;
};

/// Seconds of the processor that `count` messages cost.
template <class Sender>
double costOf(Sender& sender, int count) {
  double const before = processorSeconds();
  sender.sendAll(count);
  return processorSeconds() - before;
}

struct Paced {
  std::vector<double> latencies;  // milliseconds
  double processorSeconds = 0;

  /// What 99 of 100 messages keep below.
  [[nodiscard]] double percentile99() {
    std::ranges::sort(latencies);
    return latencies[latencies.size() * 99 / 100];
  }
};

/// Sends as a microphone gives.
template <class Sender>
void pace(Sender& sender, std::chrono::seconds time, Paced& measured) {
  double const before = processorSeconds();
  auto const begin = Clock::now();
  for (auto due = begin; due < begin + time; due += period) {
    std::this_thread::sleep_until(due);
    auto const written = std::make_shared<std::promise<Clock::time_point>>();
    auto const handedOver = Clock::now();
    sender.send([written] { written->set_value(Clock::now()); });
    std::chrono::duration<double, std::milli> const latency =
        written->get_future().get() - handedOver;
    measured.latencies.push_back(latency.count());
  }
  measured.processorSeconds += processorSeconds() - before;
}

int run(int count, int seconds) {
  test::TestAuthority const authority;
  Sink const sink(authority);
  Task ours(authority, sink);
  Peer peer(authority, sink);
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    double const theirs = costOf(peer, count);
    double const mine = costOf(ours, count);
    ratios.push_back(mine / theirs);
    fmt::print("{} messages: ours {:.1f} us each, Beast alone {:.1f} us, ratio {:.2f}\n", count,
               mine / count * 1e6, theirs / count * 1e6, mine / theirs);
  }
  std::ranges::sort(ratios);
  double const ratio = ratios[rounds / 2];
  Paced paced;
  Paced peerPaced;
  for (int round = 0; round < rounds; ++round) {
    pace(peer, std::chrono::seconds(seconds), peerPaced);
    pace(ours, std::chrono::seconds(seconds), paced);
  }
  double const latency = paced.percentile99();
  double const percent = 100.0 / (rounds * seconds);
  fmt::print("median ratio {:.2f} (at most {})\n", ratio, largestRatio);
  fmt::print(
      "in real time: written after {:.2f} ms in 99 of 100 cases (at most {}), {:.2f}% of a core; "
      "Beast alone {:.2f} ms, {:.2f}%\n",
      latency, largestLatency, paced.processorSeconds * percent, peerPaced.percentile99(),
      peerPaced.processorSeconds * percent);
  return ratio <= largestRatio && latency <= largestLatency ? 0 : 1;
}

}  // namespace
}  // namespace vek

int main(int count, char** arguments) {
  try {
    return vek::run(count > 1 ? std::stoi(arguments[1]) : 50'000,
                    count > 2 ? std::stoi(arguments[2]) : 5);
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
