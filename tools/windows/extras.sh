#!/usr/bin/env bash
# Adds to the Windows sysroot what the program uses and the pack lacks, from Debian's source packages:
# libogg, libvorbis, libopus, FFmpeg with their encoders and with mms and rtsp, Qt's SVG module.
# Usage: WIN_SYSROOT=... tools/windows/extras.sh      (about three minutes once; then it costs nothing)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=${WIN_SYSROOT:?}
deps=$root/deps
host=x86_64-w64-mingw32
work=${WIN_WORK:-$root/work-extras}
stamp=$root/.extras-$(sha256sum "$0" | cut -c1-12)
[ -e "$stamp" ] && exit 0

fetch() { # source package: unpacked to $work/src/<package>
    [ -d "$work/src/$1" ] && return
    local list=/etc/apt/sources.list.d
    if ! apt-cache showsrc "$1" 2> /dev/null | grep -q .; then
        sed 's/^Types: deb$/Types: deb-src/' $list/debian.sources > $list/wavelark-src.sources
        apt-get update -qq 2> /dev/null
    fi
    mkdir -p "$work/src"
    (cd "$work/src" && apt-get source -qq -o APT::Sandbox::User=root --download-only "$1" &&
        dpkg-source --no-check -x "$1"_*.dsc "$1.new" && rm -f "$1"_* && mv "$1.new" "$1") \
        > "$work/fetch.log" 2>&1 || {
        echo "windows: the source package $1 cannot be fetched: $(grep -m 1 '^E' "$work/fetch.log" | sed 's/Failed to fetch [^ ]* *//')" >&2
        exit 1
    }
}

build() { # name, command...: in a build folder of its own, its output shown where it fails
    local name=$1
    shift
    [ -e "$work/.done-$name" ] && return
    rm -rf "${work:?}/$name"
    mkdir -p "$work/$name"
    echo "windows: building $name"
    (cd "$work/$name" && renice -n 15 -p $BASHPID > /dev/null && "$@" > log 2>&1) || {
        tail -n 30 "$work/$name/log" >&2
        exit 1
    }
    touch "$work/.done-$name"
}

with_cmake() { # source package, options...
    local source=$work/src/$1
    shift
    cmake -G Ninja "$source" -DCMAKE_TOOLCHAIN_FILE="$here/mingw.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$deps" -DBUILD_SHARED_LIBS=OFF "$@" && ninja install
}

with_configure() { # source package, options...
    local source=$work/src/$1
    shift
    # without fortification: its checks live in a library that a static libopus does not name
    "$source/configure" --host=$host --prefix="$deps" --disable-shared --enable-static "$@" \
        CFLAGS="-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=0" &&
        make -j "$(nproc)" install
}

ffmpeg() {
    # Windows tells of a refused connection as an exception of the socket, which is not looked at where
    # only writing is waited for: every refusal would last as long as the time limit.
    sed -i 's/events & POLLERR)/events \& (POLLERR | POLLOUT))/' "$work/src/ffmpeg/libavformat/os_support.c"
    grep -q 'POLLERR | POLLOUT' "$work/src/ffmpeg/libavformat/os_support.c" || return 1
    PKG_CONFIG_LIBDIR=$deps/lib/pkgconfig "$work/src/ffmpeg/configure" --prefix="$deps" \
        --enable-cross-compile --cross-prefix=$host- --target-os=mingw32 --arch=x86_64 \
        --pkg-config=pkg-config --pkg-config-flags=--static --disable-x86asm --enable-shared --disable-static \
        --disable-debug --disable-doc --disable-programs --disable-autodetect --disable-everything \
        --disable-avdevice --disable-avfilter --disable-swscale --disable-postproc --enable-w32threads \
        --enable-network --enable-schannel --enable-zlib --enable-libmp3lame --enable-libvorbis --enable-libopus \
        --extra-cflags="-I$deps/include" --extra-ldflags="-L$deps/lib" \
        --enable-decoder=mp3,mp3float,mp2,mp2float,mp1,mp1float,aac,aac_latm,flac,vorbis,opus,wmav1,wmav2,wmapro,wmalossless,pcm_s16le,pcm_s16be,pcm_s24le,pcm_s24be,pcm_s32le,pcm_f32le,pcm_u8,alac,ac3 \
        --enable-encoder=flac,aac,wmav2,libmp3lame,libvorbis,libopus,pcm_s16le,pcm_s24le,pcm_f32le \
        --enable-demuxer=mp3,aac,flac,ogg,asf,hls,mpegts,mov,wav,aiff,loas,w64,concat,rtsp,sdp,rtp \
        --enable-muxer=mp3,adts,flac,ogg,oga,opus,asf,wav,mpegts,ipod,mov,mp4,matroska,hls \
        --enable-parser=mpegaudio,aac,aac_latm,flac,vorbis,opus,ac3 \
        --enable-protocol=file,http,https,tcp,tls,udp,rtp,hls,crypto,pipe,data,mmsh,mmst \
        --enable-bsf=aac_adtstoasc &&
        make -j "$(nproc)" install
}

svg() {
    # qmake was built for another folder; this file tells it where it stands now
    printf '[Paths]\nPrefix=..\n' > "$root/qt/bin/qt.conf"
    "$root/qt/bin/qmake" "$work/src/qtsvg-opensource-src" "QMAKE_CXXFLAGS+=-Wno-attributes" &&
        make -j "$(nproc)" && make install
}

mkdir -p "$work/bin"
if command -v ccache > /dev/null; then # by the compilers' names, whatever asks for them
    for name in gcc g++ gcc-posix g++-posix; do
        ln -sf "$(command -v ccache)" "$work/bin/$host-$name"
    done
    PATH=$work/bin:$PATH
fi
for package in libogg libvorbis opus ffmpeg qtsvg-opensource-src; do
    fetch "$package"
done
build ogg with_cmake libogg -DINSTALL_DOCS=OFF -DBUILD_TESTING=OFF
build vorbis with_cmake libvorbis
build opus with_configure opus --disable-doc --disable-extra-programs
build ffmpeg ffmpeg
build svg svg
find "$deps/bin" "$root/qt/bin" "$root/qt/plugins" -name '*.dll' -exec $host-strip {} +
sed -i "s|^prefix=.*|prefix=\${pcfiledir}/../..|; s|$deps|\${prefix}|g" "$deps"/lib/pkgconfig/*.pc
rm -rf "$work"
touch "$stamp"
