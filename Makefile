# Two entry points: `make demo` and `make test`. Everything else is CMake.
# `make SANITIZE=ON BUILD_DIR=build-asan test`: everything under ASan + UBSan.
# `make tsan`: the threaded tests under ThreadSanitizer (build-tsan).
# `make fuzz`: each libFuzzer target for FUZZ_SECONDS (default 300), clang, build-fuzz.
MAKEFLAGS += --no-print-directory
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)
SANITIZE ?= OFF
# Warnings fail the build under CI (the CI variable set) unless told otherwise.
WERROR ?= $(if $(CI),ON,OFF)

.PHONY: deps configure build demo test tsan fuzz clean

deps:
	@bash cmake/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DBT_SANITIZE=$(SANITIZE) -DBT_WERROR=$(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS) --timeout 300

# The tests that run threads of their own (streams, transport, play windows,
# voice, unload, picture worker, history, request cancel); the rest are single-threaded
# Qt tests. The module announces its hand-offs through Qt's locks, which the sanitizer
# cannot see (BodyTemperature/CThreadHandOff.h). Left out: the site record (glibc's
# getaddrinfo_a resolves on a thread of its own that the sanitizer never saw start,
# and its allocator crashes there).
TSAN_TESTS ?= RequestCancel|AlarmStream|StreamSilence|Transport|DeviceBehaviour|PlayWindow|EmulatorStream|CVoicePlayer|ModuleUnload|AlarmListener|PicturePreparer|CBTShowWidget|CHistoryWindow|PasswordExposure|fuzz_

tsan: deps
	@cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBT_SANITIZE=thread >/dev/null
	@cmake --build build-tsan -j $(JOBS)
	@cd build-tsan && ctest --output-on-failure -j $(JOBS) --timeout 600 -R '$(TSAN_TESTS)'

fuzz: deps
	@bash cmake/run-fuzz.sh build-fuzz

demo: build
	@bash cmake/run-demo.sh $(BUILD_DIR)

clean:
	rm -rf $(BUILD_DIR)
