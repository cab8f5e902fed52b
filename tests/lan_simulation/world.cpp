#include <SDL_mixer.h>
#include <SDL_ttf.h>
#include <dlfcn.h>
#include <sched.h>

#include <algorithm>
#include <semaphore>
#include <thread>

#include "lan_simulation.h"
#include "net/networks.h"
#include "net/socket_api.h"

machine machines[3] = {
    {0, "Zoë", {"400", "320"}}, {1, "Bob", {"800", "640"}}, {2, "Carol-Anne", {"80", "64"}}};
machine &host = machines[0], &guest = machines[1], &third = machines[2];
long long now;
unsigned percent_lost;
std::set<std::string> texts;

namespace {

thread_local machine *self;  // null on the threads of the libraries and of the test
using semaphore = std::binary_semaphore;
semaphore turns[] = {semaphore(0), semaphore(0), semaphore(0)}, test_turn(0);
unsigned slowest_way;  // ms; some take twice as long, and are overtaken

void sleep_until(long long wake) {
  self->wake = wake;
  test_turn.release();
  turns[self->number].acquire();
}

// Whenever the program ends, its player soon starts it again.
void run_machine(machine &own) {
  self = &own;
  turns[own.number].acquire();
  void *library = dlopen((MACHINES + std::to_string(own.number) + ".so").c_str(), RTLD_NOW | RTLD_LOCAL);
  own.net = static_cast<network_record *>(dlsym(library, "netInfo"));
  own.context = static_cast<context_record *>(dlsym(library, "context"));
  own.hit_sound = static_cast<void **>(dlsym(library, "gPunchHit"));
  const auto program = reinterpret_cast<int (*)(int, char **)>(dlsym(library, "_Z9game_mainiPPc"));
  char *arguments[] = {nullptr, own.size[0].data(), own.size[1].data()};
  for (;;) {
    program(3, arguments);
    own.events.clear();
    own.closing = 0;
    sleep_until(now + 500);
  }
}

// The threads take turns, which is quickest on one processor.
void start_machines() {
  cpu_set_t processor = {};
  CPU_SET(sched_getcpu(), &processor);
  sched_setaffinity(0, sizeof processor, &processor);
  for (const char *variable : {"SDL_VIDEODRIVER", "SDL_AUDIODRIVER"}) setenv(variable, "dummy", 1);
  for (machine &machine : machines) std::thread(run_machine, std::ref(machine)).detach();
}

long long next_arrival() {
  return self->inbox.empty() ? now + 1'000'000 : self->inbox.begin()->first;
}

}  // namespace

bool run(long long duration, const std::function<bool()> &until) {
  const long long end = now + duration;
  const auto due = [](const machine &own) { return std::max({own.wake, own.stopped_until, now}); };
  for (;;) {
    machine &next = *std::ranges::min_element(machines, {}, due);
    if (due(next) > end) break;
    now = due(next);
    turns[next.number].release();
    test_turn.acquire();
    if (until && until()) return true;
  }
  now = end;
  return false;
}

void begin(unsigned seed) {
  if (host.net == nullptr) start_machines();
  now = (now / 1'000'000 + 1) * 1'000'000;
  for (machine &own : machines) own.stopped_until = 0, own.on_frame = {}, own.events.clear();
  run(700);  // what has ended starts again
  for (machine &own : machines) own.context->state_machine->next_state = screen_main_menu;
  run(300);
  slowest_way = seed % 4 == 0 ? 30 : 3;
  for (machine &own : machines) {
    own = {own.number, own.name, {own.size[0], own.size[1]}, own.net, own.context, own.hit_sound};
    own.random.seed(3 * seed + own.number);
    own.wake = now + own.random() % 33;
    own.clock_ahead = own.random() % 1000;
    own.on_frame = play;
    own.net->username[0] = '\0';
    own.context->fight_time = 7;
  }
}

extern "C" std::time_t time(std::time_t *) noexcept {
  return self == nullptr ? 0 : 1'700'000'000 + (now + self->clock_ahead) / 1000;
}

Uint32 SDL_GetTicks() {
  return self == nullptr ? 0 : static_cast<Uint32>(now);
}

void SDL_Delay(Uint32 ms) {
  sleep_until(now + ms + self->random() % 2);
}

int SDL_PollEvent(SDL_Event *event) {
  return SDL_PeepEvents(event, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT);
}

int SDL_PeepEvents(SDL_Event *event, int, SDL_eventaction, Uint32 first, Uint32 last) {
  const auto is_wanted = [&](const SDL_Event &queued) { return queued.type >= first && queued.type <= last; };
  const auto found = std::ranges::find_if(self->events, is_wanted);
  if (found == self->events.end()) return 0;
  *event = *found;
  self->events.erase(found);
  return 1;
}

SDL_Surface *TTF_RenderUTF8_Solid(TTF_Font *, const char *text, SDL_Color) {
  texts.insert(text);
  return SDL_CreateRGBSurface(0, 1, 1, 32, 0, 0, 0, 0);
}

int Mix_PlayChannel(int, Mix_Chunk *chunk, int) {
  return ++self->heard[chunk == *self->hit_sound];
}

// Nothing is drawn: SDL refuses what this renderer is asked for.
SDL_Renderer *SDL_CreateRenderer(SDL_Window *, int, Uint32) {
  static long long nothing[100];
  return reinterpret_cast<SDL_Renderer *>(nothing);
}

SDL_Texture *SDL_CreateTextureFromSurface(SDL_Renderer *renderer, SDL_Surface *) {
  return reinterpret_cast<SDL_Texture *>(renderer);
}

void fighter_render(const fighter *, int, int) {}

void SDL_RenderPresent(SDL_Renderer *) {
  if (self->on_frame) self->on_frame(*self);
}

void SDL_Quit() {}  // it is there for all machines

std::span<const local_network> networks_find(std::uint32_t, local_network (&)[network_limit]) {
  return {};
}

int socket_send(socket_handle, const char *bytes, int count, const sockaddr_in &to) {
  const std::string text(bytes, static_cast<std::size_t>(count));
  const unsigned address = ntohl(to.sin_addr.s_addr);
  for (machine &other : machines) {
    const bool meant = &other != self && (address >> 24 == 239 || address == 0x0A000001U + other.number);
    if (!meant || self->random() % 100 < percent_lost) continue;
    const int way = static_cast<int>(self->random() % slowest_way) * (self->random() % 8 == 0 ? 2 : 1);
    other.inbox.emplace(now + way, static_cast<char>(self->number) + text);
    if (other.listening) other.wake = std::min(other.wake, now + way);
  }
  return count;
}

int socket_receive(socket_handle, char *bytes, int most, sockaddr_in *from, socket_length *) {
  const std::string datagram = self->inbox.extract(self->inbox.begin()).mapped();
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(datagram[0]));
  return static_cast<int>(datagram.copy(bytes, static_cast<std::size_t>(most), 1));
}

int socket_wait(socket_handle, int sets, int, int microseconds) {
  const int writable = sets & socket_writable;
  const long long end = std::min(now + microseconds / 1000, next_arrival());
  self->listening = writable == 0 && end > now;
  if (self->listening) sleep_until(end);
  self->listening = false;
  return writable | (next_arrival() <= now ? sets & socket_readable : 0);
}
