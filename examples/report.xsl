<?xml version="1.0"?>
<!-- Turns the orders dataset into an HTML report: totals per customer, then
     the orders of the month with the largest turnover. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html"/>
  <xsl:key name="by-customer" match="data[@guid='orders']/row" use="col[@name='customer']/@value"/>

  <xsl:template match="/">
    <html>
      <head><title>Orders report</title></head>
      <body>
        <h1>Orders report</h1>
        <p><xsl:value-of select="count(//data[@guid='orders']/row)"/> orders</p>
        <table border="1">
          <tr><th>Customer</th><th>Orders</th><th>Items</th><th>Turnover</th></tr>
          <xsl:for-each select="//data[@guid='orders']/row[generate-id() =
              generate-id(key('by-customer', col[@name='customer']/@value)[1])]">
            <xsl:sort select="col[@name='customer_name']/@value"/>
            <xsl:variable name="orders" select="key('by-customer', col[@name='customer']/@value)"/>
            <tr>
              <td><xsl:value-of select="col[@name='customer_name']/@value"/></td>
              <td><xsl:value-of select="count($orders)"/></td>
              <td><xsl:value-of select="sum($orders/col[@name='quantity']/@value)"/></td>
              <td>
                <xsl:call-template name="turnover">
                  <xsl:with-param name="rows" select="$orders"/>
                </xsl:call-template>
              </td>
            </tr>
          </xsl:for-each>
        </table>
      </body>
    </html>
  </xsl:template>

  <!-- Sum of quantity times unit price over the rows, formatted with two decimals. -->
  <xsl:template name="turnover">
    <xsl:param name="rows"/>
    <xsl:param name="total" select="0"/>
    <xsl:choose>
      <xsl:when test="$rows">
        <xsl:call-template name="turnover">
          <xsl:with-param name="rows" select="$rows[position() &gt; 1]"/>
          <xsl:with-param name="total" select="$total + $rows[1]/col[@name='quantity']/@value *
              $rows[1]/col[@name='unit_price']/@value"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="format-number($total, '#,##0.00')"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
