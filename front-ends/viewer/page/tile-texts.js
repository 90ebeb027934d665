// What a tile says in words.

// Why the image is not moving; empty for one that is.
export function ageText(channel, statistics) {
  const why = statistics?.why;
  if (!why) return "";
  const seconds = statistics.arrival ? Math.round((Date.now() - statistics.arrival) / 1000) : null;
  const age = seconds !== null && seconds >= 2 ? `, ${seconds} s old` : "";
  return why + age;
}

export function rateText(channel, statistics, shown, image) {
  if (!statistics) return "";
  const parts = [
    `image ${statistics.received}`,
    `${channel.width} × ${channel.height}`,
    image ? `${image.bits} bits` : null,
    `${statistics.rate.toFixed(1)}/s arrived`,
    `${shown}/s shown`,
    `${(statistics.bytesPerSecond / 1e6).toFixed(1)} MB/s`,
    `${statistics.lost} lost`,
    `${statistics.skipped} skipped`,
  ];
  return parts.filter(Boolean).join(" · ");
}
