# The two commands of the quick start are `make run` and `make test`; both bootstrap first.
BUILD_DIR  ?= build
BUILD_TYPE ?= Release
ARGS       ?=
JOBS       ?= $(shell nproc)
SANITIZE_DIR ?= build-sanitize
FUZZ_DIR     ?= build-fuzz
TSAN_DIR     ?= build-tsan
FUZZ_SECONDS ?= 60

CMAKE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)
ifeq ($(CI),true)
CMAKE_FLAGS += -DQUILLON_WERROR=ON
endif

.PHONY: all bootstrap configure build run test test-sanitize test-tsan fuzz bench format clean

all: build

bootstrap:
	@bash scripts/bootstrap

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)

configure: $(BUILD_DIR)/build.ninja

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The desk itself; without a display it says so and names the command line (build/bin/quillon).
run: bootstrap build
	$(BUILD_DIR)/bin/quillon-desktop $(ARGS)

test: bootstrap build
	ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

# The whole suite again with AddressSanitizer and UndefinedBehaviorSanitizer, in its own folder.
# Built for checking, not speed: -O1 with line tables and assertions on, no desktop (its tests run
# in `make test`), no benchmarks. The crash tests kill their child fewer times here; the ordinary
# run keeps the full count.
SANITIZE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1" -DQUILLON_ENABLE_ASAN=ON \
	-DQUILLON_BUILD_GUI=OFF -DQUILLON_BUILD_BENCHMARKS=OFF
SANITIZE_CRASH_RUNS ?= 60

test-sanitize: bootstrap
	cmake -S . -B $(SANITIZE_DIR) $(SANITIZE_FLAGS)
	cmake --build $(SANITIZE_DIR) -j $(JOBS)
	QUILLON_CRASH_RUNS=$(SANITIZE_CRASH_RUNS) \
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/tests/sanitize/lsan.supp \
		ctest --test-dir $(SANITIZE_DIR) --output-on-failure -j $(JOBS)

# The threaded parts again with ThreadSanitizer, in its own folder: the mesh (its Asio thread and the
# executor it posts to), the store (parallel decoding, backups that encode on every core), the
# platform helpers and the editing controller. tests/sanitize/tsan.supp says why each entry is there.
TSAN_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1" -DQUILLON_ENABLE_TSAN=ON \
	-DQUILLON_BUILD_GUI=OFF -DQUILLON_BUILD_BENCHMARKS=OFF
TSAN_TESTS := mesh_tests mesh_network_tests store_tests store_crash_tests platform_tests app_tests

test-tsan: bootstrap
	cmake -S . -B $(TSAN_DIR) $(TSAN_FLAGS)
	cmake --build $(TSAN_DIR) -j $(JOBS) --target $(TSAN_TESTS)
	QUILLON_CRASH_RUNS=$(SANITIZE_CRASH_RUNS) \
	TSAN_OPTIONS="second_deadlock_stack=1 suppressions=$(CURDIR)/tests/sanitize/tsan.supp" \
		ctest --test-dir $(TSAN_DIR) --output-on-failure -j $(JOBS) -R '^($(subst $() ,|,$(TSAN_TESTS)))$$'

# Every fuzz target for FUZZ_SECONDS each (clang + libFuzzer), in its own folder.
fuzz: bootstrap
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DQUILLON_BUILD_FUZZERS=ON -DQUILLON_BUILD_TESTS=OFF -DQUILLON_BUILD_BENCHMARKS=OFF
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target $$(ls tests/fuzz/corpus | sed 's/^/fuzz_/')
	FUZZ_SECONDS=$(FUZZ_SECONDS) scripts/fuzz $(FUZZ_DIR)

bench: bootstrap build
	@set -e; for b in $(BUILD_DIR)/bin/*_bench; do \
		echo "== $$(basename $$b)"; $$b --benchmark_counters_tabular=true; \
	done; \
	for s in bench/*_compare; do [ -x "$$s" ] && { echo "== $$(basename $$s)"; BUILD_DIR=$(BUILD_DIR) "$$s"; }; done; true

format:
	@git ls-files '*.cpp' '*.h' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(TSAN_DIR) $(FUZZ_DIR)
