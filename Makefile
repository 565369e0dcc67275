# The entry points of optdesk. `make run` and `make test` do all set-up on a fresh Debian 12.
BUILD      ?= build
GENERATOR  ?= Ninja
CMAKE_ARGS ?=
ARGS       ?=
CTEST_JOBS ?= 2
BENCH_ARGS ?=

.PHONY: all deps configure build run test bench soak test-asan test-tsan fuzz clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" $(CMAKE_ARGS)

configure: $(BUILD)/build.ninja

build: deps configure
	cmake --build $(BUILD)

run: deps configure
	cmake --build $(BUILD) --target optdesk
	$(BUILD)/app/optdesk $(ARGS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(CTEST_JOBS)

# The paper broker's kill -9 soak at 1,000 rounds (the suite runs 200).
SOAK_ROUNDS ?= 1000
soak: build
	cd $(BUILD) && PAPER_KILL_ROUNDS=$(SOAK_ROUNDS) ./tests/test_paperkill

bench: deps
	cmake -S . -B build-bench -G $(GENERATOR) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DOPTDESK_BUILD_BENCH=ON
	cmake --build build-bench
	@bash scripts/run-benchmarks.sh build-bench $(BENCH_ARGS)

test-asan: deps
	cmake -S . -B build-asan -G $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DOPTDESK_SANITIZE=address
	cmake --build build-asan
	cd build-asan && ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --output-on-failure -j $(CTEST_JOBS)

test-tsan: deps
	cmake -S . -B build-tsan -G $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DOPTDESK_SANITIZE=thread
	cmake --build build-tsan
	cd build-tsan && TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/cmake/tsan.supp" ctest --output-on-failure -j $(CTEST_JOBS)

# Fuzzes the parse step of the Greeks import with clang's libFuzzer, ASan and
# UBSan; new inputs go to build-fuzz/corpus, the seeds stay as they are.
FUZZ_RUNS ?= 10000000
FUZZ_TIME ?= 7200
FUZZ_ARGS ?=
fuzz: deps
	CXX=clang++ cmake -S fuzz -B build-fuzz -G $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build build-fuzz
	mkdir -p build-fuzz/corpus
	build-fuzz/fuzz_exgreeks -runs=$(FUZZ_RUNS) -max_total_time=$(FUZZ_TIME) -max_len=4096 \
		-dict=fuzz/exgreeks.dict -print_final_stats=1 $(FUZZ_ARGS) build-fuzz/corpus fuzz/corpus/exgreeks

clean:
	rm -rf $(BUILD) build-bench build-asan build-tsan
