#!/usr/bin/env bash
# Beautifies clips of many kinds with the program and checks what comes out: streams, times, tags, colours, and what is
# said of clips that cannot be taken. Runs the lines of docs/video.md too. Look at out/video.mp4, made of out/video-in.mp4.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh program video
bash scripts/try.sh >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
page="$PWD/docs/video.md" portrait="$PWD/samples/portrait.png" out="$PWD/out"
export PATH="$PWD/build-try:$PATH"
export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy # for ffplay, where there is no screen
cd "$work"

fail() {
  echo "try_video.sh: $*" >&2
  exit 1
}

same() { # WHAT EXPECTED FOUND
  [ "$2" = "$3" ] || fail "$1: expected '$2', found '$3'"
}

make() { ffmpeg -nostdin -y -v error "$@"; }

x265() { # the encoder of 10-bit clips, ARGUMENTS of ffmpeg first
  make "${@:1:$#-1}" -c:v libx265 -preset ultrafast -x265-params log-level=none "${@: -1}"
}

# Prints a fenced block of the page by its number.
example() {
  awk -v number="$1" '/^```sh$/ {++block; inside = 1; next} /^```$/ {inside = 0} inside && block == number' "$page"
}

probe() { ffprobe -v error "$@" </dev/null; }

# The kinds of the streams, those of the video in their place, and what stands in them.
streams() { probe -show_entries stream=codec_type,width,height,sample_aspect_ratio,field_order -of csv=p=0 "$1"; }
words() {
  probe -show_chapters -show_entries format_tags=title:stream_tags=language,filename:stream_disposition=forced,attached_pic:chapter=start_time,end_time:chapter_tags:stream_side_data=rotation \
    -of compact=p=0 "$1"
}
colors() { probe -select_streams v:0 -show_entries stream=pix_fmt,color_space,color_range -of csv=p=0 "$1"; }
times() { probe -select_streams v:0 -show_entries packet=pts_time -of csv=p=0 "$1" | sort -n; }
sound_times() { probe -select_streams a -show_entries packet=pts_time -of csv=p=0 "$1"; }
duration() { probe -show_entries format=duration -of csv=p=0 "$1"; }
sound() { make -i "$1" -map 0:a -c copy -f md5 -; }

# The least likeness of luma and chroma in decibels, frame by frame whatever their times. FILTER brings the first file to the colours of the second.
likeness() { # FILE FILE [FILTER]
  local number=settb=1/25,setpts=N
  ffmpeg -nostdin -hide_banner -i "$1" -i "$2" -f null - \
    -lavfi "[0:v:0]${3:-null},$number[a];[1:v:0]$number[b];[a][b]psnr" 2>&1 |
    sed -n 's/.*PSNR y:\([0-9inf]*\)[.0-9]* u:\([0-9inf]*\)[.0-9]* v:\([0-9inf]*\).*/\1 \2 \3/p' |
    tr ' ' '\n' | sed 's/inf/99/' | sort -n | head -n 1
}

alike() { # LEAST FILE FILE [FILTER]
  local found
  found=$(likeness "${@:2}")
  [ "${found:-0}" -ge "$1" ] || fail "$3 is not like $2: $found dB"
}

# Beautifies and expects success with exactly the LINES, of which the name of the file is left out.
done_with() { # LINES IN OUT [OPTIONS]
  vlvk-makeup video "${@:2}" 2>said || fail "video ${*:2}: $(cat said)"
  same "what is said of $2" "$1" "$(sed "s/^vlvk-makeup: $2: //" said)"
}
neutral=(--whiten 0 --soften 0)

# Expects that nothing is written, one line that holds WORDS, and the exit code.
refused() { # CODE WORDS OPTIONS
  local code=0
  rm -f new.*
  vlvk-makeup video "${@:3}" 2>said || code=$?
  same "exit code of video ${*:3}" "$1" "$code"
  same "lines of video ${*:3}" 1 "$(wc -l <said)"
  grep -qF -- "$2" said || fail "video ${*:3} says: $(cat said)"
  ! compgen -G 'new.*' >/dev/null || fail "video ${*:3} leaves a file"
  ! compgen -G '.vlvk*' >/dev/null || fail "video ${*:3} leaves a temporary file"
}

# The portrait, slowly coming closer, with a tone.
hd=(-colorspace bt709 -color_primaries bt709 -color_trc bt709)
x264=(-c:v libx264 -preset veryfast -crf 12)
make -loop 1 -i "$portrait" -f lavfi -i sine=440:duration=2 \
  -vf "crop=iw:iw*9/16:0:0,zoompan=z=1+on/200:d=1:s=640x360:fps=25,scale=out_color_matrix=bt709:out_range=tv" \
  -pix_fmt yuv420p "${hd[@]}" -color_range tv "${x264[@]}" -bf 2 -c:a aac -shortest -t 2 in.mp4

# The page.
example 1 >plain.sh
bash plain.sh || fail "example 1 of docs/video.md has failed"
[ "$(likeness in.mp4 out.mp4)" -lt 42 ] || fail "example 1 of docs/video.md beautifies nothing"
cp in.mp4 "$out/video-in.mp4"
cp out.mp4 "$out/video.mp4"
x265 -i in.mp4 -pix_fmt yuv420p10le -color_trc smpte2084 -color_primaries bt2020 -colorspace bt2020nc -c:a copy hdr.mp4
for number in 2 3 4; do
  bash <(example "$number") || fail "example $number of docs/video.md has failed"
done

# As it came: streams, tags, times and sound.
make -i in.mp4 -vf "select='not(eq(mod(n\,7)\,3))',setpts='PTS+between(N\,10\,20)*0.013/TB'" -fps_mode passthrough \
  -enc_time_base 1/90000 "${x264[@]}" -bf 2 -c:a copy varied.mp4
make -display_rotation 90 -i in.mp4 -c copy turned.mp4 2>/dev/null || make -i in.mp4 -c copy -metadata:s:v rotate=90 turned.mp4
make -i in.mp4 -vf scale=out_range=full -pix_fmt yuvj420p "${x264[@]}" -c:a copy full.mp4
make -i in.mp4 -c copy -an mute.mp4
make -ss 0.5 -i in.mp4 -c copy edited.mp4
make -f lavfi -i testsrc2=s=720x576:r=25 -t 1 -vf interlace -flags +ilme+ildct "${x264[@]}" -x264opts tff=1 \
  -pix_fmt yuv420p -aspect 16:9 -colorspace bt470bg -color_range tv interlaced.mp4
cat >marks.txt <<'END'
;FFMETADATA1
title=My film
[CHAPTER]
TIMEBASE=1/1000
START=0
END=1000
title=One
[CHAPTER]
TIMEBASE=1/1000
START=1000
END=2000
title=Two
END
printf '1\n00:00:00,200 --> 00:00:01,000\nHello\n' >words.srt
make -i in.mp4 -frames:v 1 cover.png
make -i in.mp4 -i words.srt -i marks.txt -map 0 -map 1 -map_metadata 2 -c copy -c:s srt -metadata:s:a:0 language=fra \
  -disposition:s:0 forced -attach cover.png -metadata:s:t:0 mimetype=image/png -metadata:s:t:0 filename=cover.png \
  -attach marks.txt -metadata:s:t:1 mimetype=text/plain whole.mkv
make -i in.mp4 -i cover.png -i words.srt -i marks.txt -map 0 -map 1 -map 2 -map_metadata 3 -c copy -c:s mov_text \
  -disposition:v:1 attached_pic -metadata:s:a:0 language=fra whole.mp4
for clip in in.mp4 varied.mp4 turned.mp4 full.mp4 mute.mp4 edited.mp4 interlaced.mp4 whole.mkv whole.mp4; do
  result="result.${clip##*.}"
  done_with "" "$clip" "$result" "${neutral[@]}"
  for facts in streams words colors times sound_times duration; do
    [ "$clip $facts" != 'edited.mp4 times' ] || continue    # frames before the edit are there for decoding only
    [ "$clip $facts" != 'whole.mkv duration' ] || continue # Matroska does not say that the last sound is a short one
    same "$facts of $clip" "$($facts "$clip")" "$($facts "$result")"
  done
  probe -show_entries stream=codec_type -of csv=p=0 "$clip" | grep -q audio && same sound "$(sound "$clip")" "$(sound "$result")"
  alike 40 "$clip" "$result"
done

# What is assumed is written.
for lines in 480 720; do
  make -f lavfi -i "testsrc2=s=$((lines * 16 / 9 / 2 * 2))x$lines:r=25" -t 0.4 -pix_fmt yuv420p "${x264[@]}" plain.mp4
  matrix=$([ $lines = 480 ] && echo BT.601 || echo BT.709)
  done_with "its colours are not tagged, and taken as $matrix, limited range" plain.mp4 result.mp4
  same "colours of $lines lines" "yuv420p,tv,$([ $lines = 480 ] && echo smpte170m || echo bt709)" "$(colors result.mp4)"
done

# Converted: to 8-bit 4:2:0, to even sizes, upright, to BT.709.
make -i in.mp4 -pix_fmt yuv422p "${x264[@]}" -c:a copy 422.mp4
make -i in.mp4 -pix_fmt yuv444p "${x264[@]}" -c:a copy 444.mp4
x265 -i in.mp4 -pix_fmt yuv420p10le -c:a copy 420p10le.mp4
careful=flags=bicubic+accurate_rnd+full_chroma_int:in_h_chr_pos=0:out_h_chr_pos=0:out_v_chr_pos=128
for format in 422 444 420p10le; do
  pixels=yuv$format
  [ $format = 420p10le ] || pixels+=p
  done_with "frames of $pixels are converted to 8-bit 4:2:0" $format.mp4 result.mp4 "${neutral[@]}"
  alike 42 $format.mp4 result.mp4 "scale=$careful,format=yuv420p"
  same "times of $format" "$(times $format.mp4)" "$(times result.mp4)"
  same "colours of $format" yuv420p,tv,bt709 "$(colors result.mp4)"
done
make -i in.mp4 -vf crop=321:241:0:0:exact=1 -c:v ffv1 -an odd.mkv
done_with "the odd last row or column is left out, the encoder wants even sizes: 320x240" odd.mkv result.mp4 "${neutral[@]}"
alike 40 odd.mkv result.mp4 crop=320:240:0:0
done_with "" odd.mkv result.mkv "${neutral[@]}" --codec ffv1
alike 99 odd.mkv result.mkv
done_with "" turned.mp4 result.mkv "${neutral[@]}"
alike 40 turned.mp4 result.mkv # ffmpeg turns what it reads
x265 -i in.mp4 -vf scale=out_color_matrix=bt2020 -pix_fmt yuv420p10le -color_trc bt2020-10 -color_primaries bt2020 \
  -colorspace bt2020nc -an wide.mp4
vlvk-makeup video wide.mp4 result.mp4 2>said
same "lines of wide.mp4" 2 "$(wc -l <said)"
same "colours of wide.mp4" yuv420p,tv,bt709 "$(colors result.mp4)"
make -i in.mp4 -vf extractplanes=y -c:v ffv1 -color_range tv -colorspace bt709 -an grey.mkv
done_with "frames of gray are converted to 8-bit 4:2:0" grey.mkv result.mp4 "${neutral[@]}"
same "colours of grey.mkv" yuv420p,tv,bt709 "$(colors result.mp4)"
alike 40 in.mp4 result.mp4 extractplanes=y,format=yuv420p
make -i in.mp4 -map 0 -map 0:v -c copy two.mkv
done_with "stream 2 (video, h264) is copied as it is" two.mkv result.mkv "${neutral[@]}" --preset ultrafast
done_with "stream 1 (audio, aac) is left out: files of the kind 'webm' do not hold it" in.mp4 result.webm --crf 40

# The engine gets the matrix and the range of the clip: the result is that of frames in BT.601, limited, with a table that
# exchanges red and blue, and nearer to it than that of wrong tags.
printf '%s\n' 'LUT_3D_SIZE 2' '0 0 0' '0 0 1' '0 1 0' '0 1 1' '1 0 0' '1 0 1' '1 1 0' '1 1 1' >exchange.cube
exchange=("${neutral[@]}" --table exchange.cube)
exact=flags=accurate_rnd+full_chroma_int
for clip in in.mp4 full.mp4; do
  make -i $clip -vf "scale=$exact:out_color_matrix=bt601:out_range=tv,format=yuv420p" -f yuv4mpegpipe - |
    vlvk-makeup video - expected.y4m "${exchange[@]}"
  make -i $clip -pix_fmt yuv420p -vf setparams=range=tv:colorspace=smpte170m -c:v ffv1 -an wrong.mkv
  done_with "" $clip right.mkv "${exchange[@]}" --codec ffv1
  done_with "" wrong.mkv wrong.mkv "${exchange[@]}" --codec ffv1
  range=$([ $clip = in.mp4 ] && echo tv || echo pc)
  as_clip="scale=$exact:in_color_matrix=bt601:out_color_matrix=bt709:in_range=tv:out_range=$range"
  alike 42 expected.y4m right.mkv "$as_clip"
  [ "$(likeness expected.y4m right.mkv "$as_clip")" -ge $(($(likeness expected.y4m wrong.mkv "$as_clip") + 2)) ] ||
    fail "the engine has not got the matrix and the range of $clip"
done

# The same frames by every road, whatever the file.
vlvk-makeup video in.mp4 - --quiet 2>said >bare.y4m
vlvk-makeup video in.mp4 result.mkv --preset ultrafast --checksum two.txt --frametimes times.txt --quiet
same "frames of times.txt" 51 "$(wc -l <times.txt)"
same "frames of two.txt" 51 "$(wc -l <two.txt)"
make -i in.mp4 -map 0 -c copy -f mpegts in.ts
vlvk-makeup video - result.ts --preset ultrafast --checksum three.txt <in.ts
cmp two.txt three.txt || fail "a pipe changes frames"
vlvk-makeup video - result.ts --from mpegts --preset ultrafast --checksum three.txt <in.ts
cmp two.txt three.txt || fail "a pipe with --from changes frames"
cp in.mp4 both.mp4
vlvk-makeup video both.mp4 both.mp4
cmp both.mp4 out.mp4 || fail "IN and OUT being one file changes the result"

# What cannot be taken.
make -i in.mp4 -vn -c copy sound.m4a
x265 -i in.mp4 -pix_fmt yuv420p10le -color_trc arib-std-b67 -color_primaries bt2020 -colorspace bt2020nc -an hlg.mp4
make -i in.mp4 -c copy -movflags +faststart fast.mp4
head -c 250000 in.mp4 >headless.mp4
refused 1 "HDR video (PQ)" hdr.mp4 new.mp4
refused 1 "HDR video (HLG)" hlg.mp4 new.mp4
refused 1 "there is no video in it" sound.m4a new.mp4
refused 1 "headless.mp4: moov atom not found" headless.mp4 new.mp4
printf "no video\n%.0s" {1..400} >letters
refused 1 "letters: Invalid data found" letters new.mp4
refused 1 "none.mp4: No such file" none.mp4 new.mp4
refused 1 "none/new.mp4: cannot be written: No such file" in.mp4 none/new.mp4
refused 1 "/dev/full: cannot be written: No space left" in.mp4 /dev/full --to matroska
refused 1 "h264_v4l2m2m" in.mp4 new.mp4 --codec h264_v4l2m2m
refused 2 "its name ends like no kind of video file" in.mp4 new.xyz
refused 2 "FFmpeg has no encoder 'x' for video" in.mp4 new.mp4 --codec x
refused 2 "files of the kind 'webm' hold no h264" in.mp4 new.webm --codec h264
refused 2 "--preset: libx264 has no 'x'" in.mp4 new.mp4 --preset x
refused 2 "--preset: libx265 has no 'x'" in.mp4 new.mp4 --codec libx265 --preset x
refused 2 "--crf" in.mp4 new.mp4 --crf x
refused 2 "libx264 takes 0 to 51" in.mp4 new.mp4 --crf 52
refused 2 "ffv1 has no scale of quality" in.mp4 new.mkv --codec ffv1 --crf 2
refused 2 "frames without headers have no --codec" in.mp4 new.mp4 --format nv12 --size 2x2 --codec h264
refused 2 "--from: FFmpeg reads no 'x'" in.mp4 new.mp4 --from x

# Whole frames before the break are kept, and all that can be decoded.
head -c 250000 fast.mp4 >cut.mp4
make -i in.mp4 -c copy joined.mkv
head -c 250000 joined.mkv >cut.mkv
second=$(probe -select_streams v:0 -show_entries packet=pos -of csv=p=0 joined.mkv | sed -n 2p)
head -c $((second + 100)) joined.mkv >early.mkv # FFmpeg sees the end while opening it
packet=188
begin=$(($(stat -c %s in.ts) / packet / 3 * packet))
{ head -c $begin in.ts && tail -c +$((begin + packet + 1)) in.ts; } >lost.ts
cp fast.mp4 hurt.mp4
head -c 20000 /dev/zero | dd of=hurt.mp4 bs=1 seek=60000 conv=notrunc status=none
for clip in cut.mp4 cut.mkv early.mkv hurt.mp4 lost.ts; do
  code=0
  vlvk-makeup video $clip result.mp4 2>said || code=$?
  same "exit code for $clip" 1 $code
  same "lines for $clip" 1 "$(wc -l <said)"
  frames=$(probe -count_frames -select_streams v -show_entries stream=nb_read_frames -of csv=p=0 result.mp4)
  least=15
  [ $clip != early.mkv ] || least=1
  [ $clip != lost.ts ] || least=49
  [ "$frames" -ge $least ] || fail "of $clip only $frames frames are kept"
done

# An interrupt leaves the old file.
cp in.mp4 old.mp4
code=0
timeout --signal=INT 0.5 vlvk-makeup video in.mp4 old.mp4 --codec libx265 --preset placebo 2>said || code=$?
same "an interrupt" "124 vlvk-makeup: interrupted" "$code $(cat said)"
cmp in.mp4 old.mp4 || fail "an interrupt changes the old file"

# The engine waits for nothing where frames come and go without any work on them: the first ones aside.
make -loop 1 -i "$portrait" -vf scale=1920:1080,format=yuv420p -frames:v 60 -f yuv4mpegpipe big.y4m
vlvk-makeup video big.y4m /dev/null --frametimes times.txt
awk 'NR > 6 {engine += $2; waited += $3} END {exit !(waited < engine / 2)}' times.txt ||
  fail "the engine waits for reading and writing"
echo "Look at out/video.mp4"
