<?php
// PHP with its curl and JSON extensions: one kept handle, options set once. For each line
// "LINES COUNT" on standard input it registers COUNT receipts of LINES lines and prints the nanoseconds that they
// took and the fiscal sign of the last one. Arguments: base address of the service, file with the certificate to
// trust or "".
declare(strict_types=1);

[, $base, $caFile] = $argv;
$names = [
    'vat' => ['vat0', 'vat10', 'vat20', 'vat110', 'vat120', 'none'],
    'method' => ['full_prepayment', 'prepayment', 'advance', 'full_payment'],
    'object' => ['commodity', 'excise', 'job', 'service'],
];

$curl = curl_init();
$headers = ['Content-type: application/json; charset=utf-8', 'Expect:'];
curl_setopt_array($curl, [
    CURLOPT_RETURNTRANSFER => true,
    CURLOPT_HTTP_VERSION => CURL_HTTP_VERSION_1_1,
    CURLOPT_HTTPHEADER => $headers,
] + ($caFile === '' ? [] : [CURLOPT_CAINFO => $caFile]));

function post($curl, string $url, string $body): array
{
    curl_setopt($curl, CURLOPT_URL, $url);
    curl_setopt($curl, CURLOPT_POSTFIELDS, $body);
    return json_decode(curl_exec($curl), true, 16, JSON_THROW_ON_ERROR);
}

function get($curl, string $url): array
{
    curl_setopt($curl, CURLOPT_URL, $url);
    curl_setopt($curl, CURLOPT_HTTPGET, true);
    return json_decode(curl_exec($curl), true, 16, JSON_THROW_ON_ERROR);
}

function sampleSale(int $count): array
{
    $lines = [];
    $total = 0.0;
    for ($i = 0; $i < $count; ++$i) {
        $kind = $i % 100;
        $price = 15 + $kind + ($kind % 4) * 0.25;
        $quantity = 1 + ($kind % 5) * 0.5;
        $sum = round($price * $quantity, 2);
        $name = 'Молоко «Луговое» 3,2 %, бутылка № ' . ($kind + 1);
        $lines[] = ['name' => $name, 'price' => $price, 'quantity' => $quantity, 'sum' => $sum, 'tax' => $kind % 6,
            'method' => 3 - $kind % 4, 'object' => intdiv($kind, 4) % 4];
        $total += $sum;
    }
    return ['lines' => $lines, 'total' => $total];
}

function compose(array $sale, array $names): string
{
    $items = [];
    foreach ($sale['lines'] as $line) {
        $items[] = [
            'name' => $line['name'],
            'payment_method' => $names['method'][$line['method']],
            'payment_object' => $names['object'][$line['object']],
            'price' => $line['price'],
            'quantity' => $line['quantity'],
            'sum' => $line['sum'],
            'vat' => ['type' => $names['vat'][$line['tax']]],
        ];
    }
    return json_encode([
        'external_id' => 'till-7-000123',
        'receipt' => [
            'client' => ['email' => 'buyer@example.com'],
            'company' => [
                'email' => 'shop@example.com',
                'inn' => '7700000000',
                'payment_address' => 'https://shop.example.com',
                'sno' => 'osn',
            ],
            'items' => $items,
            'payments' => [['sum' => $sale['total'], 'type' => 1]],
            'total' => $sale['total'],
        ],
        'timestamp' => date('d.m.Y H:i:s'),
    ], JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_THROW_ON_ERROR);
}

function register($curl, string $group, array $sale, array $names): int
{
    $accepted = post($curl, $group . '/sell', compose($sale, $names));
    $done = get($curl, $group . '/report/' . $accepted['uuid']);
    return $done['payload']['fiscal_document_attribute'];
}

$token = post($curl, $base . 'getToken', '{"login":"bench","pass":"bench"}')['token'];
curl_setopt($curl, CURLOPT_HTTPHEADER, [...$headers, 'token: ' . $token]);
$group = $base . 'shop_group';

while (($order = fgets(STDIN)) !== false) {
    [$lines, $count] = array_map('intval', explode(' ', $order));
    $sale = sampleSale($lines);
    $sign = 0;
    $start = hrtime(true);
    for ($i = 0; $i < $count; ++$i) {
        $sign = register($curl, $group, $sale, $names);
    }
    echo hrtime(true) - $start, ' ', $sign, "\n";
}
