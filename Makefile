# The two commands of the quick start are `make run` and `make test`; both bootstrap first.
BUILD_DIR  ?= build
BUILD_TYPE ?= Release
ARGS       ?=
JOBS       ?= $(shell nproc)

CMAKE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)
ifeq ($(CI),true)
CMAKE_FLAGS += -DQUILLON_WERROR=ON
endif

.PHONY: all bootstrap configure build run test bench format clean

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

bench: bootstrap build
	@set -e; for b in $(BUILD_DIR)/bin/*_bench; do \
		echo "== $$(basename $$b)"; $$b --benchmark_counters_tabular=true; \
	done; \
	for s in bench/*_compare; do [ -x "$$s" ] && { echo "== $$(basename $$s)"; BUILD_DIR=$(BUILD_DIR) "$$s"; }; done; true

format:
	@git ls-files '*.cpp' '*.h' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD_DIR)
