// What a tile says in words.

// Why the image is not moving; empty for one that is.
export function reasonText(channel, statistics) {
  return statistics?.why ? statistics.why + (channel.ended ? ` (${channel.ended})` : "") : "";
}

export function ageText(statistics, time) {
  if (!statistics?.why || !statistics.arrival) return "";
  const seconds = Math.round((time - statistics.arrival) / 1000);
  return seconds >= 2 ? `, ${seconds} s old` : "";
}

export function rateText(channel, statistics, shown, image, histogram) {
  if (!statistics) return "";
  const parts = [
    `image ${statistics.received}`,
    `${channel.width} × ${channel.height}`,
    image ? `${image.bits} bits` : null,
    histogram ? `values ${histogram.minimum} to ${histogram.maximum}, mean ${histogram.mean.toFixed(1)}` : null,
    `${statistics.rate.toFixed(1)}/s arrived`,
    `${shown}/s shown`,
    `${(statistics.bytesPerSecond / 1e6).toFixed(1)} MB/s`,
    `${statistics.lost} lost`,
    `${statistics.skipped} skipped`,
  ];
  return parts.filter(Boolean).join(" · ");
}
