#include <SDL_mixer.h>
#include <SDL_ttf.h>
#include <dlfcn.h>
#include <sched.h>

#include <algorithm>
#include <thread>

#include "lan_simulation.h"
#include "net/networks.h"
#include "net/socket_api.h"

machine machines[3] = {{0, "Zoë", 400, 320}, {1, "Bob", 800, 640}, {2, "Carol-Anne", 80, 64}};
machine &host = machines[0], &guest = machines[1], &third = machines[2];
long long now;
unsigned percent_lost;
std::function<bool(unsigned to, const std::string &bytes)> loses;

namespace {

thread_local machine *self;  // null on the threads of the libraries and of the test
std::binary_semaphore test_turn(0);
unsigned slowest_way;

void sleep_until(long long wake, bool listening) {
  self->wake = wake;
  self->listening = listening;
  test_turn.release();
  self->turn.acquire();
}

long long due(const machine &machine) {
  const bool by_mail =
      machine.listening && !machine.inbox.empty() && machine.inbox.begin()->first < machine.wake;
  return std::max({by_mail ? machine.inbox.begin()->first : machine.wake, machine.stopped_until, now});
}

// Whenever the program ends, its player soon starts it again.
void run_program(machine &own, int (*program)(int, char **)) {
  self = &own;
  own.turn.acquire();
  for (;;) {
    const long long started = now;
    std::string size[] = {std::to_string(own.width), std::to_string(own.height)};
    char *arguments[] = {nullptr, size[0].data(), size[1].data()};
    program(3, arguments);
    own.events.clear();
    own.closing = 0;
    if (now == started) std::abort();  // it could not start
    sleep_until(now + 500, false);
  }
}

void start(machine &started) {
  void *library = dlopen((MACHINES + std::to_string(started.number) + ".so").c_str(), RTLD_NOW | RTLD_LOCAL);
  started.net = static_cast<network_record *>(dlsym(library, "netInfo"));
  started.context = static_cast<context_record *>(dlsym(library, "context"));
  started.room_list = static_cast<list_node **>(dlsym(library, "creatorList"));
  started.hit_sound = static_cast<void **>(dlsym(library, "gPunchHit"));
  const auto program = reinterpret_cast<int (*)(int, char **)>(dlsym(library, "_Z9game_mainiPPc"));
  std::thread(run_program, std::ref(started), program).detach();
}

// The threads take turns, which is quickest on one processor.
void start_programs() {
  cpu_set_t processor;
  CPU_ZERO(&processor);
  CPU_SET(sched_getcpu(), &processor);
  sched_setaffinity(0, sizeof processor, &processor);
  for (const char *variable : {"SDL_VIDEODRIVER", "SDL_AUDIODRIVER"}) setenv(variable, "dummy", 1);
  setenv("SDL_RENDER_DRIVER", "software", 1);
  std::ranges::for_each(machines, start);
}

void reset(machine &machine, unsigned seed) {
  machine.random.seed(3 * seed + machine.number);
  machine.wake = now + machine.random() % 33;
  machine.ticks_ahead = machine.number * 12'345;
  machine.clock_ahead = machine.random() % 1000;
  machine.next_punch = machine.punches = machine.heard[0] = machine.heard[1] = 0;
  machine.to_join = 0;
  machine.inbox.clear();
  machine.held.clear();
  machine.texts.clear();
  machine.net->username[0] = '\0';
  machine.context->frame_count = 0;
  machine.context->fight_time = 60;
}

}  // namespace

bool run(long long duration, const std::function<bool()> &until) {
  const long long end = now + duration;
  for (machine *next; next = std::ranges::min_element(machines, {}, due), due(*next) <= end;) {
    now = due(*next);
    next->turn.release();
    test_turn.acquire();
    if (until && until()) return true;
  }
  now = end;
  return false;
}

void begin(unsigned seed, unsigned percent, unsigned slowest) {
  if (host.net == nullptr) start_programs();
  loses = {};
  now = (now / 1'000'000 + 1) * 1'000'000;
  for (machine &machine : machines) {
    machine.on_frame = {};
    machine.wish = be_idle;
    machine.stopped_until = 0;
    machine.events.clear();
  }
  run(700);  // what has ended starts again
  for (machine &machine : machines) machine.context->state_machine->next_state = screen_main_menu;
  run(300);
  std::srand(seed);
  for (machine &machine : machines) reset(machine, seed);
  third.stopped_until = now + 1'000'000;
  percent_lost = percent;
  slowest_way = slowest;
}

extern "C" std::time_t time(std::time_t *) noexcept {
  return self == nullptr ? 0 : 1'700'000'000 + (now + self->clock_ahead) / 1000;
}

Uint32 SDL_GetTicks() {
  return self == nullptr ? 0 : static_cast<Uint32>(now + self->ticks_ahead);
}

void SDL_Delay(Uint32 ms) {
  sleep_until(now + ms + self->random() % 2, false);
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
  self->texts.insert(text);
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
    if (!meant || self->random() % 100 < percent_lost || (loses && loses(other.number, text))) continue;
    for (int copies = self->random() % 20 == 0 ? 2 : 1; copies > 0; --copies) {
      const auto way = self->random() % (slowest_way + 1);
      const auto arrival =
          now + static_cast<int>(way * (self->random() % 8 == 0 ? 4 : 1));  // some are overtaken
      other.inbox.emplace(arrival, static_cast<char>(self->number) + text);
    }
  }
  return count;
}

bool socket_peek(socket_handle, sockaddr_in *from) {
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(self->inbox.begin()->second[0]));
  return true;
}

int socket_receive(socket_handle socket, char *bytes, int most, sockaddr_in *from, socket_length *) {
  socket_peek(socket, from);
  const auto mail = self->inbox.extract(self->inbox.begin());
  return static_cast<int>(mail.mapped().copy(bytes, static_cast<std::size_t>(most), 1));
}

int socket_wait(socket_handle, int sets, int, int microseconds) {
  const auto has_mail = [] { return !self->inbox.empty() && self->inbox.begin()->first <= now; };
  const int writable = sets & socket_writable;
  if (writable == 0 && microseconds > 0 && !has_mail()) sleep_until(now + microseconds / 1000, true);
  return writable | (has_mail() ? sets & socket_readable : 0);
}
